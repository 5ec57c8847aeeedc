# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The Debian package (`cpack -G DEB` in the build folder, or the `package` target): the system layout of the
# install rules: the bundle in /opt/Applications, the desktop files under /usr/share, `corvex` in /usr/bin. The
# library dependencies come from dpkg-shlibdeps; the rest are the Qt plugins the programs load at run time and
# the tools the relaunch and the desktop integration run. The desktop and icon databases are refreshed by the
# triggers of desktop-file-utils and hicolor-icon-theme, so the package needs no maintainer scripts.

set(CPACK_GENERATOR "DEB")
# The programs go without their debugging information: a fifth of the size.
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_NAME "corvex")
set(CPACK_PACKAGE_VENDOR "The Corvex developers")
set(CPACK_PACKAGE_VERSION ${CORVEX_MARKETING_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Renames, converts and files each new screenshot")
set(CPACK_PACKAGE_DESCRIPTION
    "Corvex takes over a screenshot after the desktop has saved it. A background agent applies your automatic\n"
    "steps: rename it by a pattern of date, time, counter and size, convert it to another image format, move it\n"
    "to a folder, open it with an application. A small window per screenshot lets you type a name, pick a\n"
    "folder and a format. The command-line tool corvex works on the same settings.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGE_CONTACT "The Corvex developers <corvex@ostrel.com>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://ostrel.com/corvex/")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/README.md")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_COMPONENTS_ALL Bundle Desktop CLI)
set(CPACK_DEB_COMPONENT_INSTALL OFF)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "graphics")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qt6-qpa-plugins, qt6-image-formats-plugins, libqt6svg6, procps, desktop-file-utils, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, pkexec")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
