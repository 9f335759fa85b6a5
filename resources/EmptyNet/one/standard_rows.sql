-- The rows a new store of one network starts with, in stored (English) words; display_words.sql turns them into
-- the words of the older releases.
insert into VehicleType values (1, 'Car', 4.5, 0.5, 2, 0.2, 60, 10, 80, 4, 0.5, 5.5, 6, 0.5, 7.5);
insert into VehicleType values (2, 'Coach', 12, 0.6, 2.5, 0.25, 50, 5, 70, 3, 0.5, 5, 5, 0.5, 7.5);
insert into VehicleType values (3, 'Bus', 12, 0.6, 2.5, 0.25, 50, 5, 70, 3, 0.5, 5, 5, 0.5, 7.5);
insert into VehicleType values (4, 'Truck', 8, 2, 2.5, 0.25, 50, 5, 70, 2.5, 0.4, 4.5, 4, 0.5, 5.5);
insert into VehicleType values (5, 'Escooter', 2.5, 0.15, 0.7, 0.07, 25, 5, 30, 3.5, 0.5, 1.9, 5, 1, 2.3);
insert into VehicleType values (6, 'Bicycle', 1.8, 0.15, 0.6, 0.06, 12, 2, 15, 3.5, 0.5, 1.5, 5, 1, 1.7);
insert into VehicleType values (7, 'Pedestrian', 0.5, 0.1, 0.5, 0.05, 4.5, 1, 6, 3, 1, 4, 9, 3, 12);
insert into VehicleType values (8, 'EngineeringVehicle', 8.8, 0, 3, 0, 50, 5, 70, 2.5, 0.4, 4, 4, 0.5, 5.5);
insert into VehicleType values (9, 'FireEngine', 10.2, 0, 3, 0, 60, 10, 80, 4, 0.5, 5, 6, 0.5, 7.5);
insert into VehicleType values (10, 'Ambulance', 5.8, 0, 2.5, 0, 60, 10, 80, 4, 0.5, 5.5, 6, 0.5, 7.5);
insert into VehicleType values (11, 'Plane', 40, 0, 17.2, 0, 120, 20, 300, 4, 0.5, 5.5, 6, 0.5, 7.5);
insert into VehicleType values (12, 'Helicopter', 23.7, 0, 12.2, 0, 120, 20, 300, 4, 0.5, 5.5, 6, 0.5, 7.5);

insert into VehicleConstitutent values (1, 'default', 'T');
insert into VehicleConsDetail values (1, 1, 90);
insert into VehicleConsDetail values (1, 2, 10);

insert into LinkType values (1, 'TrunkRoad', 1600, 60, 80, 40, 60);
insert into LinkType values (2, 'SecondaryRoad', 1200, 40, 60, 20, 40);
insert into LinkType values (3, 'LocalStreet', 900, 30, 40, 10, 30);
insert into LinkType values (4, 'Highway', 2200, 100, 120, 60, 100);
insert into LinkType values (5, 'Expressway', 1600, 60, 80, 40, 60);
insert into LinkType values (6, 'Ramp', 0, 30, 40, 20, null);
insert into LinkType values (7, 'BusLane', 0, 40, 60, 20, null);
insert into LinkType values (8, 'NonMotorizedLane', 0, 20, 30, 5, null);
insert into LinkType values (9, 'MixedLane', 0, 20, 30, 5, null);
insert into LinkType values (10, 'PedestrianCrossing', 0, 5, 8, 1, null);

insert into DriveFollowedModelParam values (1, 5, 1.5, 2, 2, 4, 2);
insert into DriveFollowedModelParam values (2, 3, 1.5, 1.5, 0.5, 4, 2);

insert into ChangeLaneModelParam values (1, 1, 0.1553, 0.2175, 0.1553, 0, 1, 0.008, 1.5, 0.0932, 0.2796, 0.1864, 0, 1.5, 0.008);
insert into ChangeLaneModelParam values (2, 1, 0.0932, 0.1864, 0.1243, 0.0621, 1, 0.008, 1.5, 0.0621, 0.2175, 0.1553, 0.0621, 1.5, 0.008);
insert into ChangeLaneModelParam values (3, 0.5, 0.0621, 0.1553, 0.0932, 0.031, 0.5, 0.008, 1, 0.3107, 0.1864, 0.1243, 0.031, 1, 0.008);

insert into Configuration values (600, 400, 1, null, 'T', 'T', '2020-05-03T00:00:00');
insert into SimulateConfiguration values (3600, 'F', 0, 0, 0, 1, 20, 0);
insert into VehicleTraceOption values ('F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F', 'F');

-- A counter that stands at 0 looks at its table first and so never hands out a standard row's identifier; a table
-- without a counter would start at 1 whatever it holds. Lane connectors are numbered in memory and have none.
insert into IDGenerater values ('General', 0);
insert into IDGenerater values ('Vertex', 0);
insert into IDGenerater values ('Node', 0);
insert into IDGenerater values ('Link', 0);
insert into IDGenerater values ('Lane', 0);
insert into IDGenerater values ('Connector', 0);
insert into IDGenerater values ('GuideArrow', 0);
insert into IDGenerater values ('SignalGroup', 0);
insert into IDGenerater values ('SignalPhase', 0);
insert into IDGenerater values ('SignalLamp', 0);
insert into IDGenerater values ('VehicleConstitutent', 0);
insert into IDGenerater values ('DeparturePoint', 0);
insert into IDGenerater values ('DepartureInterval', 0);
insert into IDGenerater values ('DecisionPoint', 0);
insert into IDGenerater values ('Routing', 0);
insert into IDGenerater values ('RoutingFLowRatio', 0);
insert into IDGenerater values ('VehicleDetector', 0);
insert into IDGenerater values ('VehicleQueueCounter', 0);
insert into IDGenerater values ('VehicleTravelDetector', 0);
insert into IDGenerater values ('VehicleDrivInfoCollecter', 0);
insert into IDGenerater values ('BusLine', 0);
insert into IDGenerater values ('BusStation', 0);
insert into IDGenerater values ('BusStationLine', 0);
insert into IDGenerater values ('ReduceSpeedArea', 0);
insert into IDGenerater values ('ReduceSpeedInterval', 0);
