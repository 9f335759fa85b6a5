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
# they include each other by their whole path ("MoraStore/model/Link.h": a host may have a folder model/ of its own), and the
# headers that forward let hosts write <MoraStore/Link.h>.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/interfaces/MoraInterfaces ${PROJECT_SOURCE_DIR}/support/MoraSupport
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/model ${PROJECT_BINARY_DIR}/include/MoraStore/
        DESTINATION ${MORASTORE_INCLUDE_DIR} FILES_MATCHING PATTERN *.h)
# What lies in the folders below store/ is the library's own.
file(GLOB MORASTORE_FACADES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/store/*.h)
install(FILES ${MORASTORE_FACADES} DESTINATION ${MORASTORE_INCLUDE_DIR}/store)
install(CODE "set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${MORASTORE_INCLUDE_DIR}\")")
install(CODE [[
    file(GLOB headers "${folder}/*.h" "${folder}/model/*.h" "${folder}/store/*.h")
    foreach(header IN LISTS headers)
        file(READ "${header}" text)
        string(REGEX REPLACE "#include \"(model|store)/" "#include \"MoraStore/\\1/" text "${text}")
        file(WRITE "${header}" "${text}")
    endforeach()
]])

install(EXPORT MoraStoreTargets NAMESPACE MoraStore:: DESTINATION ${MORASTORE_PACKAGE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MoraStoreConfig.cmake.in ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake
                              INSTALL_DESTINATION ${MORASTORE_PACKAGE_DIR})
# Before 1.0 a minor release may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoraStoreConfig.cmake ${PROJECT_BINARY_DIR}/MoraStoreConfigVersion.cmake
        DESTINATION ${MORASTORE_PACKAGE_DIR})
