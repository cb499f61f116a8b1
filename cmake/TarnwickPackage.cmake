# `cpack -G DEB` in the build directory: a Debian package of what cmake/TarnwickInstall.cmake
# installs, under /usr, with its library dependencies worked out by dpkg-shlibdeps.
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "tarnwick")
set(CPACK_PACKAGE_VENDOR "The Tarnwick developers")
set(CPACK_PACKAGE_CONTACT "The Tarnwick developers <packages@tarnwick.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Live glass tiles on the desktop")
set(CPACK_PACKAGE_DESCRIPTION "Clocks, weather, system readings, calendar, media and some fifty
kinds of live tiles that snap to a grid on the desktop of every display.")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "utils")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the libraries do not say: Qt's X11 platform plugin, the symbol font the tiles draw with,
# the sound theme the timers ring with,
# and the tools that open what a tile points at.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, fonts-material-design-icons-iconfont, sound-theme-freedesktop")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
include(CPack)
