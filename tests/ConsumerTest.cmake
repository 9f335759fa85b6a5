# Installs BUILD_DIR into a fresh tree below WORK_DIR, builds SOURCE_DIR against nothing but that tree, and runs it.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK_DIR})

set(PREFIX ${WORK_DIR}/prefix)
include(${CMAKE_CURRENT_LIST_DIR}/Installed.cmake)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/first)
# What was installed must also work where it is moved to.
file(RENAME ${WORK_DIR}/first ${PREFIX})

# Every public header compiles and includes nothing that was not installed.
file(GLOB headers RELATIVE ${PREFIX}/include ${PREFIX}/include/Mora*/*.h)
if(NOT "MoraStore/DBTools.h" IN_LIST headers)
    message(FATAL_ERROR "No public headers in ${PREFIX}/include")
endif()
list(TRANSFORM headers REPLACE "(.+)" "#include <\\1>\n")
list(JOIN headers "" headers)
file(COPY ${SOURCE_DIR}/ DESTINATION ${WORK_DIR}/source)
file(WRITE ${WORK_DIR}/source/headers.cpp "${headers}")
file(APPEND ${WORK_DIR}/source/CMakeLists.txt "
add_library(headers OBJECT headers.cpp)
target_link_libraries(headers PRIVATE MoraStore::MoraStore MoraStore::MoraSupport MoraStore::MoraTools)
")

build(${WORK_DIR}/source)
run(${WORK_DIR}/build/consumer ${WORK_DIR}/store.db)
if(NOT output MATCHES "${EXPECTED}")
    message(FATAL_ERROR "The consumer did not print '${EXPECTED}'.")
endif()

# 13 edges of the network are no internal ones.
run(${WORK_DIR}/build/account ${WORK_DIR}/city.db ${NETWORK})
if(NOT output STREQUAL "crossing: 13 links\n")
    message(FATAL_ERROR "The account is '${output}'.")
endif()

# What a library exports, a public header declares: the rest would be its own and bind programs all the same. Sanitizers add
# symbols of theirs.
if(NOT CXX_FLAGS MATCHES sanitize)
    find_program(nm nm REQUIRED)
    find_program(python3 python3 REQUIRED)
    run(${python3} ${SOURCE_DIR}/../../scripts/check-exports ${PREFIX})
endif()

if(EXISTS ${PREFIX}/bin/morastore)
    run(${PREFIX}/bin/morastore --help)
endif()
