# The Debian package: `cpack` in a build folder makes it.
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
include(CPack)
