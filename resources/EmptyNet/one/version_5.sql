-- Stores of generation 2 carry the number 5: the numbering of the releases is not the order of the generations.
-- The row keeps the statement that brought the trace options.
insert into DbVersion
    select 5, 'EmptyNet_V1.00.05', '增加表VehiTraceOption，设置车辆轨迹输出选项', sql, '20200503'
    from sqlite_master where type = 'table' and name = 'VehicleTraceOption';
