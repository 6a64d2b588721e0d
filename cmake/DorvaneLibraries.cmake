# SPDX-License-Identifier: GPL-3.0-or-later
# Libraries are looked for through these, so that one which is missing is named in words.

# dorvane_missing(<what it is> <what was looked for>...)
function(dorvane_missing what)
  list(JOIN ARGN " " looked_for)
  message(FATAL_ERROR "Dorvane needs ${what} and did not find it (${looked_for}).\n"
    "On Debian `scripts/deps build` installs all that a build needs; docs/distributions.md names "
    "the packages of others.")
endfunction()

# dorvane_library(<prefix> <what it is> <pkg-config module>...)
# Makes PkgConfig::<prefix>.
macro(dorvane_library prefix what)
  pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${ARGN})
  if(NOT ${prefix}_FOUND)
    dorvane_missing("${what}" pkg-config: ${ARGN})
  endif()
endmacro()

# dorvane_package(<what it is> <package of CMake> [<version>] [COMPONENTS ...])
macro(dorvane_package what package)
  find_package(${package} ${ARGN} QUIET)
  if(NOT ${package}_FOUND)
    dorvane_missing("${what}" CMake package: ${package} ${ARGN} ${${package}_NOT_FOUND_MESSAGE})
  endif()
endmacro()
