# SPDX-License-Identifier: MIT
# Read by cpack once for each kind of package.
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_COMPONENTS_ALL debian)
    set(CPACK_PACKAGING_INSTALL_PREFIX "/")
else()
    set(CPACK_COMPONENTS_ALL archive)
    set(CPACK_PACKAGING_INSTALL_PREFIX "")
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
