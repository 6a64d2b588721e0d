# SPDX-License-Identifier: GPL-3.0-or-later

# The bundle is one relocatable folder; everything the program needs at run time is inside.
set(DORVANE_BUNDLE_DIR "${CMAKE_BINARY_DIR}/Dorvane.app")

# dorvane_precompiled(<kind> LINK ...)
# What the headers of cmake/precompiled/<kind>.h come to, for dorvane_precompile(). Three quarters of
# the time of a build go into reading them.
function(dorvane_precompiled kind)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  if(NOT DORVANE_PRECOMPILE)
    return()
  endif()
  set(target dorvane_precompiled_${kind})
  add_library(${target} OBJECT "${CMAKE_SOURCE_DIR}/cmake/precompiled/${kind}.cpp")
  set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
  target_link_libraries(${target} PRIVATE dorvane_flags ${ARG_LINK})
  target_precompile_headers(${target} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/precompiled/${kind}.h")
  # The headers are the system's: a compiler cache need not tell one build's copy from another's.
  file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.gch.sum"
       "${kind} ${CMAKE_CXX_COMPILER_VERSION} ${CMAKE_BUILD_TYPE} ${DORVANE_SANITIZE}")
endfunction()

# dorvane_precompile(<target> <kind>)
function(dorvane_precompile target kind)
  if(DORVANE_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM dorvane_precompiled_${kind})
  endif()
endfunction()

# dorvane_folder(<folder> [WIDGETS] SOURCES ... LINK ...)
# One static library a source folder, named dorvane_<folder>, so that the link graph
# enforces which folder may use which. WIDGETS says that it has windows.
function(dorvane_folder name)
  cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LINK" ${ARGN})
  add_library(dorvane_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(dorvane_${name} PUBLIC dorvane_flags ${ARG_LINK})
  if(ARG_WIDGETS)
    dorvane_precompile(dorvane_${name} widgets)
  else()
    dorvane_precompile(dorvane_${name} core)
  endif()
endfunction()

# dorvane_interface_folder(<folder> LINK ...)
# The same for a folder that holds headers only.
function(dorvane_interface_folder name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  add_library(dorvane_${name} INTERFACE)
  target_link_libraries(dorvane_${name} INTERFACE dorvane_flags ${ARG_LINK})
endfunction()

# dorvane_test(<room> [EXCEPT <expression>] [SOURCES ...] LINK ...)
# All of tests/<room>, but for the files whose names match, as one GoogleTest program, beside the given
# sources; its cases become CTest tests named <room>_test.<suite>.<case>.
function(dorvane_test room)
  cmake_parse_arguments(ARG "" "EXCEPT" "SOURCES;LINK" ${ARGN})
  set(name ${room}_test)
  file(GLOB tests CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${room}/*Test.cpp")
  if(ARG_EXCEPT)
    list(FILTER tests EXCLUDE REGEX "/(${ARG_EXCEPT})[^/]*$")
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_SOURCE_DIR}/")
  add_executable(${name} ${tests} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/${room}")
  target_link_libraries(${name} PRIVATE dorvane_test_support dorvane_platform_linux ${ARG_LINK})
  target_compile_definitions(${name} PRIVATE
    DORVANE_BUNDLE="${DORVANE_BUNDLE_DIR}" DORVANE_SEEDS="${CMAKE_SOURCE_DIR}/tests/fuzz/seeds")
  add_dependencies(${name} dorvane_bundle)
  dorvane_precompile(${name} tests)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 120)
endfunction()
