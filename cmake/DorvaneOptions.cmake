# SPDX-License-Identifier: GPL-3.0-or-later
# Build options, and the one interface target with the flags that everything links.

option(DORVANE_WARNINGS_AS_ERRORS "Treat warnings as errors, as the presets for developers and CI do" OFF)
option(DORVANE_TIDY "Run clang-tidy with the build" OFF)
option(DORVANE_FUZZ "Build the fuzz targets instead of the tests" OFF)
option(DORVANE_COVERAGE "Instrument for gcov" OFF)
option(DORVANE_PRECOMPILE "Read the headers of Qt and the standard library once" ON)
set(DORVANE_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF) # nothing is generated from what another target builds
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTOUIC_SEARCH_PATHS "${CMAKE_SOURCE_DIR}/resources/forms")

add_library(dorvane_flags INTERFACE)
target_include_directories(dorvane_flags INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_definitions(dorvane_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(dorvane_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wcast-align -Wformat=2
  -Wimplicit-fallthrough -Wextra-semi
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wduplicated-branches>
  $<$<BOOL:${DORVANE_WARNINGS_AS_ERRORS}>:-Werror>)

# What makes a fault of memory harder to use, in what is shipped: tests/packaging looks whether it is
# there.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
if(NOT DORVANE_SANITIZE AND NOT DORVANE_FUZZ AND NOT DORVANE_COVERAGE)
  set(hardening -fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    list(APPEND hardening -fcf-protection)
  endif()
  target_compile_options(dorvane_flags INTERFACE "$<$<NOT:$<CONFIG:Debug>>:${hardening}>")
  target_link_options(dorvane_flags INTERFACE "$<$<NOT:$<CONFIG:Debug>>:-Wl,-z,relro,-z,now,-z,noexecstack>")
endif()

if(DORVANE_SANITIZE)
  # Beyond -O1 the sanitizers make g++ report uninitialised uses that do not exist.
  target_compile_options(dorvane_flags INTERFACE
    -O1 -fno-omit-frame-pointer -fsanitize=${DORVANE_SANITIZE} -fno-sanitize-recover=undefined)
  target_link_options(dorvane_flags INTERFACE -fsanitize=${DORVANE_SANITIZE})
endif()

if(DORVANE_FUZZ)
  target_compile_options(dorvane_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(DORVANE_COVERAGE)
  target_compile_options(dorvane_flags INTERFACE --coverage -O0)
  target_link_options(dorvane_flags INTERFACE --coverage)
endif()

if(DORVANE_TIDY)
  find_program(DORVANE_CLANG_TIDY NAMES clang-tidy-14 clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY "${DORVANE_CLANG_TIDY}")
  # What is generated is not ours to mend; clang-tidy wants one check all the same.
  file(WRITE "${CMAKE_BINARY_DIR}/.clang-tidy" "Checks: '-*,misc-static-assert'\n")
endif()
