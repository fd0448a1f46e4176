# The Debian package: scripts/package builds it. What Debian wants beyond what `cmake --install` does is in
# debian_files.cmake.
set(DAYBRIX_MAINTAINER "Daybrix <maintainers@daybrix.example>" CACHE STRING "Whom the package names as its maintainer")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME daybrix)
set(CPACK_PACKAGE_VENDOR Daybrix)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "calendar in a file that several people share")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian_files.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation, qt6-wayland, shared-mime-info, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${DAYBRIX_MAINTAINER})
if(DAYBRIX_PRODUCT_PAGE)
  set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${DAYBRIX_PRODUCT_PAGE})
endif()
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tempoline keeps the appointments of a person or of a team in one calendar file.
Several people work on it at the same time from a shared folder, without a
server: an appointment that somebody edits is locked for the others, and
everybody sees a change a moment later.
.
Appointments repeat, ring alarms, carry attachments and are found, exported,
imported and printed. tempoline-cli does the same from terminals and scripts.")
include(CPack)
