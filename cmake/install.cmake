# What other projects find an installation by: the CMake package, with the targets ocifip::contract and
# ocifip::host, and pkg-config's files. All of it says where things are relative to itself, so that an
# installation can be moved.
include(CMakePackageConfigHelpers)

set(parts "")
if(OCIFIP_OWN_CONTRACT)
  list(APPEND parts contract)
endif()
if(OCIFIP_HOST)
  list(APPEND parts host)
endif()

file(RELATIVE_PATH OCIFIP_PKGCONFIG_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
     ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" OCIFIP_PKGCONFIG_TO_PREFIX "${OCIFIP_PKGCONFIG_TO_PREFIX}")
foreach(part IN LISTS parts)
  set(file ${PROJECT_BINARY_DIR}/ocifip-${part}.pc)
  configure_file(cmake/ocifip-${part}.pc.in ${file} @ONLY)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

if(parts)
  set(OCIFIP_PLUGIN_FILE ${CMAKE_INSTALL_LIBDIR}/libymap_ocifip.so)
  set(OCIFIP_MODELS_FOLDER ${CMAKE_INSTALL_DATADIR}/ocifip/models)
  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/ocifip)
  set(file ${PROJECT_BINARY_DIR}/ocifip-config)
  configure_package_config_file(cmake/ocifip-config.cmake.in ${file}.cmake
                                INSTALL_DESTINATION ${folder}
                                PATH_VARS OCIFIP_PLUGIN_FILE OCIFIP_MODELS_FOLDER)
  # Before version 1, a new minor version may change what there is.
  write_basic_package_version_file(${file}-version.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${file}.cmake ${file}-version.cmake DESTINATION ${folder})
  install(EXPORT ocifip NAMESPACE ocifip:: FILE ocifip-targets.cmake DESTINATION ${folder})
endif()

# Under the name that Debian has for it.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
if(OCIFIP_HOST)
  install(FILES docs/device.md docs/records.md docs/integration.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()
