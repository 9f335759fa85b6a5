# The installed tree: three libraries, their public headers, and the package that find_package(MoraStore) reads.
include(CMakePackageConfigHelpers)

set(MORASTORE_LIBRARIES MoraStore MoraInterfaces MoraSupport)
set(MORASTORE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/MoraStore)
set(MORASTORE_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/MoraStore)

# The tree can be moved as a whole: everything finds its libraries from where it lies.
if(APPLE)
    set(MORASTORE_ORIGIN @loader_path)
else()
    set(MORASTORE_ORIGIN $ORIGIN)
endif()
file(RELATIVE_PATH MORASTORE_BIN_TO_LIB ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(${MORASTORE_LIBRARIES} PROPERTIES INSTALL_RPATH ${MORASTORE_ORIGIN})
if(TARGET morastore)
    set_target_properties(morastore PROPERTIES INSTALL_RPATH ${MORASTORE_ORIGIN}/${MORASTORE_BIN_TO_LIB})
endif()
install(TARGETS ${MORASTORE_LIBRARIES} EXPORT MoraStoreTargets)

# Headers of the siblings lie as they do in the tree. Those of the library keep their folder below include/MoraStore, where
# they include each other by it ("model/Link.h"), and a header that forwards lets hosts write <MoraStore/Link.h>.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/interfaces/MoraInterfaces ${PROJECT_SOURCE_DIR}/support/MoraSupport
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
# What lies in the folders below store/ is the library's own.
file(GLOB MORASTORE_PUBLIC_HEADERS CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
     ${PROJECT_SOURCE_DIR}/model/*.h ${PROJECT_SOURCE_DIR}/store/*.h)
foreach(header IN LISTS MORASTORE_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    cmake_path(GET header FILENAME name)
    install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${MORASTORE_INCLUDE_DIR}/${folder})
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/forward/${name} CONTENT "#pragma once\n#include \"@header@\"\n" @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/forward/${name} DESTINATION ${MORASTORE_INCLUDE_DIR})
endforeach()

install(EXPORT MoraStoreTargets NAMESPACE MoraStore:: DESTINATION ${MORASTORE_PACKAGE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MoraStoreConfig.cmake.in ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake
                              INSTALL_DESTINATION ${MORASTORE_PACKAGE_DIR})
# Before 1.0 a minor release may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake ${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake
        DESTINATION ${MORASTORE_PACKAGE_DIR})
