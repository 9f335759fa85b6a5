-- The stores of generation 2 hold the words as they are displayed. The names of the two aircraft say large and
-- small, not plane and helicopter; the catalogue pairs them so.
update VehicleType set vehicleTypeName = '小客车' where vehicleTypeName = 'Car';
update VehicleType set vehicleTypeName = '大客车' where vehicleTypeName = 'Coach';
update VehicleType set vehicleTypeName = '公交车' where vehicleTypeName = 'Bus';
update VehicleType set vehicleTypeName = '货车' where vehicleTypeName = 'Truck';
update VehicleType set vehicleTypeName = '电动车' where vehicleTypeName = 'Escooter';
update VehicleType set vehicleTypeName = '自行车' where vehicleTypeName = 'Bicycle';
update VehicleType set vehicleTypeName = '行人' where vehicleTypeName = 'Pedestrian';
update VehicleType set vehicleTypeName = '工程车' where vehicleTypeName = 'EngineeringVehicle';
update VehicleType set vehicleTypeName = '消防车' where vehicleTypeName = 'FireEngine';
update VehicleType set vehicleTypeName = '救护车' where vehicleTypeName = 'Ambulance';
update VehicleType set vehicleTypeName = '大型飞机' where vehicleTypeName = 'Plane';
update VehicleType set vehicleTypeName = '小型飞机' where vehicleTypeName = 'Helicopter';

update VehicleConstitutent set name = '默认' where name = 'default';

-- Opening a store asks for 高速路: where it finds none, the store holds English words.
update LinkType set typeName = '城市主要干道' where typeName = 'TrunkRoad';
update LinkType set typeName = '次要干道' where typeName = 'SecondaryRoad';
update LinkType set typeName = '城市支路' where typeName = 'LocalStreet';
update LinkType set typeName = '高速路' where typeName = 'Highway';
update LinkType set typeName = '城市快速路' where typeName = 'Expressway';
update LinkType set typeName = '匝道' where typeName = 'Ramp';
update LinkType set typeName = '公交专用道' where typeName = 'BusLane';
update LinkType set typeName = '非机动车道' where typeName = 'NonMotorizedLane';
update LinkType set typeName = '机非共享' where typeName = 'MixedLane';
update LinkType set typeName = '人行道' where typeName = 'PedestrianCrossing';
