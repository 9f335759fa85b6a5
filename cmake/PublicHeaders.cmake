# morastore_public_headers(LIBRARY HEADER...): the headers, relative to the root, that programs may include.
#
# They are copied below include/MoraStore/ of the build tree, in their folders, and a header with the short name forwards to
# each: <MoraStore/Link.h>, <MoraTools/StoreSession.h>. The copies include each other by their whole path
# ("MoraStore/model/Link.h"): a program may have a folder model/ of its own. The installed tree is a copy of this one.
function(morastore_public_headers library)
    foreach(header IN LISTS ARGN)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
        file(READ ${PROJECT_SOURCE_DIR}/${header} text)
        string(REGEX REPLACE "#include \"(model|store|tools)/" "#include \"MoraStore/\\1/" text "${text}")
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/include/MoraStore/${header} CONTENT "${text}" @ONLY)
        cmake_path(GET header FILENAME name)
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/include/${library}/${name}
             CONTENT "#pragma once\n#include \"MoraStore/${header}\"\n" @ONLY)
    endforeach()
    target_include_directories(${library} BEFORE
                               PRIVATE ${PROJECT_SOURCE_DIR}
                               INTERFACE $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
                                         $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()
