-- Identifiers come from sequences, each table that objects are numbered in having its own. They serve all networks.
create sequence seq_net_id;
create sequence seq_vertex_id;
create sequence seq_node_id;
create sequence seq_link_id;
create sequence seq_lane_id;
create sequence seq_guidearrow_id;
create sequence seq_connector_id;
create sequence seq_laneconnector_id;
create sequence seq_signalgroup_id;
create sequence seq_signalphase_id;
create sequence seq_signallamp_id;
create sequence seq_vehicleconstitutent_id;
create sequence seq_departurepoint_id;
create sequence seq_departureinterval_id;
create sequence seq_decisionpoint_id;
create sequence seq_routing_id;
create sequence seq_routingflowratio_id;
create sequence seq_vehicledetector_id;
create sequence seq_vehiclequeuecounter_id;
create sequence seq_vehicletraveldetector_id;
create sequence seq_vehicledrivinfocollecter_id;
create sequence seq_busline_id;
create sequence seq_busstation_id;
create sequence seq_busstationline_id;
create sequence seq_busstationpassengerarriving_id;
create sequence seq_accidentzone_id;
create sequence seq_roadworkzone_id;
create sequence seq_reducespeedarea_id;
create sequence seq_reducespeedinterval_id;
create sequence seq_logger_id;
-- Serves the tables that have none.
create sequence seq_table_id;
-- Identifiers that belong to no table. Hosts and databases spell it with a g.
create sequence seg_table_id;
