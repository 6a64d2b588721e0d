# SPDX-License-Identifier: GPL-3.0-or-later

# The bundle is one relocatable folder; everything the program needs at run time is inside.
set(DORVANE_BUNDLE_DIR "${CMAKE_BINARY_DIR}/Dorvane.app")

# dorvane_folder(<folder> SOURCES ... LINK ...)
# One static library a source folder, named dorvane_<folder>, so that the link graph
# enforces which folder may use which.
function(dorvane_folder name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(dorvane_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(dorvane_${name} PUBLIC dorvane_flags ${ARG_LINK})
endfunction()

# dorvane_interface_folder(<folder> LINK ...)
# The same for a folder that holds headers only.
function(dorvane_interface_folder name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  add_library(dorvane_${name} INTERFACE)
  target_link_libraries(dorvane_${name} INTERFACE dorvane_flags ${ARG_LINK})
endfunction()

# dorvane_test(<name> SOURCES ... LINK ...)
# One GoogleTest program; its cases become CTest tests named <name>.<suite>.<case>.
function(dorvane_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE dorvane_flags dorvane_test_support ${ARG_LINK})
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 120)
endfunction()
