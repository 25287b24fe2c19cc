# The Debian packages: `cpack` in a build folder makes them. What no other package has is in "ocifip".
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The ocifip developers <developers@ocifip.invalid>")
set(CPACK_PACKAGE_DESCRIPTION
    "The mapping plug-in that a device's YANG management framework loads, the reference host that
stands in for such a framework, and the ocifip command, which runs requests through both.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
                                                GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
# What it depends on is found out from the libraries that its programs need.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_OCIFIP_PACKAGE_NAME ocifip)
set(CPACK_DEBIAN_AGENT_PACKAGE_NAME ocifip-agent)
set(CPACK_DEBIAN_AGENT_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_AGENT_PACKAGE_DEPENDS "ocifip (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_AGENT_PACKAGE_RECOMMENDS "openssh-server, systemd")
set(CPACK_DEBIAN_AGENT_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/agent/system/postinst")
set(CPACK_DEBIAN_AGENT_DESCRIPTION
    "The service that makes a device out of a device file: NETCONF clients configure and watch it,
in OpenConfig terms and in native ones, through the SSH server.")
include(CPack)
