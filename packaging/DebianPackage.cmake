# SPDX-License-Identifier: GPL-3.0-or-later
# The Debian package, made by `cpack -G DEB` in the build folder, or by scripts/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dorvane)
set(CPACK_PACKAGE_VENDOR Brackenfold)
set(CPACK_PACKAGE_CONTACT "Dorvane developers <dorvane@brackenfold.com>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# What is installed does not depend on the umask of whoever packs it.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "alarm clock and timers behind one small clock in the panel")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "\
Dorvane lives in the status area as a small clock, on whose face a wedge shows
how far off the nearest alarm is. Its menu holds timers that start with one
click, alarms after an interval, on a date or on weekdays, and a reminder to
take breaks. What rings opens a window with Snooze and Clear; running alarms
survive a restart and ring on time after the machine has slept.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded by name, so that no library tells of them: voices, and the reader of the icons, which has a
# package of its own in Debian 13.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "espeak-ng-data, qt6-svg-plugins | libqt6svg6 (<< 6.7.2-5~)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "pipewire-pulse | pulseaudio, qt6-wayland, sound-theme-freedesktop, tzdata, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "pkexec, systemd")
include(CPack)
