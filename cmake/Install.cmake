# The installed tree: the libraries, their public headers, and the package that find_package(MoraStore) reads.
include(CMakePackageConfigHelpers)

set(MORASTORE_LIBRARIES MoraStore MoraInterfaces MoraSupport)
if(TARGET MoraTools)
    list(APPEND MORASTORE_LIBRARIES MoraTools)
endif()
set(MORASTORE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/MoraStore)

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
if(TARGET morastore)
    install(TARGETS morastore RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# What spreads a store over a Citus cluster, for psql.
install(FILES ${PROJECT_BINARY_DIR}/resources/EmptyNet/pgsql_db6_citus.sql
        DESTINATION ${CMAKE_INSTALL_DATADIR}/morastore RENAME citus.sql)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/interfaces/MoraInterfaces ${PROJECT_SOURCE_DIR}/support/MoraSupport
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(DIRECTORY ${PROJECT_BINARY_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT MoraStoreTargets NAMESPACE MoraStore:: DESTINATION ${MORASTORE_PACKAGE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MoraStoreConfig.cmake.in ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake
                              INSTALL_DESTINATION ${MORASTORE_PACKAGE_DIR})
# Before 1.0 a minor release may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake ${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake
        DESTINATION ${MORASTORE_PACKAGE_DIR})
