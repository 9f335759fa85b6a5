# Builds examples/editing against the tree that is installed in PREFIX, runs each program and looks into the store with the
# engine's own shell.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK_DIR})
include(${CMAKE_CURRENT_LIST_DIR}/Installed.cmake)
find_program(sqlite3 sqlite3 REQUIRED)
build(${SOURCE_DIR})
set(store ${WORK_DIR}/crossing.db)

# stored(EXPECTED SQL)
function(stored expected sql)
    run(${sqlite3} ${store} "${sql}")
    expect("${sql}" "${expected}")
endfunction()

# The picture of the page is what the library makes.
run(${WORK_DIR}/build/lanes)
file(READ ${PICTURE} picture)
if(NOT output STREQUAL picture)
    file(WRITE ${WORK_DIR}/lanes.svg "${output}")
    message(FATAL_ERROR "${PICTURE} is not what examples/editing/lanes draws: ${WORK_DIR}/lanes.svg")
endif()

run(${WORK_DIR}/build/crossing ${store})
expect(crossing "8 links, 12 connectors")
stored("8|16|12|12|4|12|4" "select (select count(*) from Link), (select count(*) from Lane), (select count(*) from Connector),
    (select count(*) from LaneConnector), (select count(*) from SignalPhase), (select count(*) from SignalLamp),
    (select count(*) from DeparturePoint)")
# Who comes from the west has the road's axis, y = 0, on the left: the link in the middle of two lanes of 3.5 m, lane 1 outside.
stored("185|-3.5|-7|0" "select length, Y, json_extract(cast(rightBreakPointsJson as text), '$.data[1].y'),
    json_extract(cast(leftBreakPointsJson as text), '$.data[1].y') from Link natural join LinkVertex natural join Vertex
    where linkName = 'from West' and Num = 1")
stored("1|-5.25\n2|-1.75" "select serialNumber, json_extract(cast(a.centerLinePointsJson as text), '$.data[0].y')
    from Lane a join Link using(linkID) where linkName = 'from West' order by 1")
# Turning left one goes from lane 2 to lane 2, in nearly a quarter of a circle of 16.75 m.
stored("2|2|26.3" "select b.serialNumber, c.serialNumber, round(length, 1) from Connector join LaneConnector a using(connID),
    Lane b, Lane c where b.laneID = startLaneID and c.laneID = endLaneID and connName = 'from West to North'")
# The words of the store are English, and each phase lasts as long as the plan.
stored("ArterialRoad" "select distinct linkType from Link")
stored("1|Green15,Yellow3,Red62\n2|Red20,Green15,Yellow3,Red42\n3|Red40,Green15,Yellow3,Red22\n4|Red60,Green15,Yellow3,Red2"
    "select a.serialNumber, (select group_concat(color || timeLength) from (select * from SignalColor b
    where b.signalPhaseID = a.signalPhaseID order by serialNumber)) from SignalPhase a order by 1")
stored("Van|20\nCar|80" "select vehicleTypeName, proportion from VehicleConsDetail natural join VehicleType
    where vehicleConsCode = 2 order by 2")
# What the next import or editor draws is above what is there.
stored("0" "select count(*) from IDGenerater where TableName = 'Lane' and ID < (select max(laneID) from Lane)")

# Two edits, and back: all rows are as they were, but for the counter of lanes.
set(edited ${WORK_DIR}/undo.db)
file(COPY_FILE ${store} ${edited})
run(${WORK_DIR}/build/undo ${edited} 7)
expect(undo "before: 185 m, 2 lanes, 7 m wide
bent: 185.27 m, 2 lanes, 7 m wide
wider: 185.27 m, 3 lanes, 10.5 m wide
undone: 185.27 m, 2 lanes, 7 m wide
redone: 185.27 m, 3 lanes, 10.5 m wide
undone: 185.27 m, 2 lanes, 7 m wide
undone: 185 m, 2 lanes, 7 m wide")
function(dump file)
    run(${sqlite3} ${file} "update IDGenerater set ID = 0 where TableName = 'Lane'" .dump)
    set(output "${output}" PARENT_SCOPE)
endfunction()
file(COPY_FILE ${store} ${WORK_DIR}/untouched.db)
dump(${WORK_DIR}/untouched.db)
set(before "${output}")
dump(${edited})
if(NOT output STREQUAL before)
    message(FATAL_ERROR "What was undone left traces.")
endif()
# The paths follow the end of the link that is bent: from y = -1.75 to 10 m north of it.
file(COPY_FILE ${store} ${WORK_DIR}/bent.db)
run(${WORK_DIR}/build/undo ${WORK_DIR}/bent.db 7 1)
run(${sqlite3} ${WORK_DIR}/bent.db "select round(json_extract(cast(a.centerLinePointsJson as text), '$.data[0].y'), 2)
    from Connector join LaneConnector a using(connID) where connName = 'from West to North'")
expect("the path from the bent link" 8.25)

# Limits and widths, with all shapes that follow from them, and nothing else.
set(widened ${WORK_DIR}/batch.db)
file(COPY_FILE ${store} ${widened})
run(${WORK_DIR}/build/batch ${widened})
expect(batch "8 links are slower, 8 have wider lanes")
run(${sqlite3} ${widened} "select (select group_concat(distinct limitSpeed) from Link), (select group_concat(distinct Width) from Lane),
    round(json_extract(cast(a.centerLinePointsJson as text), '$.data[0].y'), 3),
    round(json_extract(cast(a.leftBreakPointsJson as text), '$.data[0].y'), 3),
    (select json_extract(cast(rightBreakPointsJson as text), '$.data[1].y') from Link where linkName = 'from West')
    from Connector join LaneConnector a using(connID) where connName = 'from West to North'")
expect("wider lanes" "50|3.75|-1.625|0.25|-7.25")
set(others .dump Net Vertex Node LinkVertex Signal% Vehicle% Departure% LinkType IDGenerater)
list(JOIN others " " others)
run(${sqlite3} ${store} "${others}")
set(before "${output}")
run(${sqlite3} ${widened} "${others}")
if(NOT output STREQUAL before)
    message(FATAL_ERROR "The batch changed more than it says.")
endif()
