# Where things are put. The build folder is laid out like an installation, so that the tool finds
# the plug-in and the models in the same way in both.

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})

# The same two folders as they are reached from the tool's own.
file(RELATIVE_PATH OCIFIP_BIN_TO_LIB ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH OCIFIP_BIN_TO_MODELS ${CMAKE_INSTALL_FULL_BINDIR}
     ${CMAKE_INSTALL_FULL_DATADIR}/ocifip/models)

set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/${OCIFIP_BIN_TO_LIB}")

set(OCIFIP_SYSDB_CLIENT
    ""
    CACHE FILEPATH "Library file by whose presence the plug-in knows that there is a database;
without it, the one that the client's functions come from")
