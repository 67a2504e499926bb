# SPDX-License-Identifier: MIT
# Decides which optional parts this machine can build. A part whose packages are missing
# is left out rather than stopping the configure, and all that was left out is said in
# one line, so a machine with only a compiler and CMake still builds and installs the
# library and its fonts. Sets vantor_build_{tests,bench,mkfont,sim}.
set(vantor_left_out)

set(vantor_build_tests OFF)
if(VANTOR_BUILD_TESTS)
  if(CMAKE_CROSSCOMPILING AND EXISTS /usr/src/googletest/CMakeLists.txt)
    # tests/ builds Debian's GoogleTest sources for the target.
    set(vantor_build_tests ON)
  else()
    find_package(GTest QUIET)
    if(GTest_FOUND)
      set(vantor_build_tests ON)
    else()
      list(APPEND vantor_left_out "tests (no GoogleTest: libgtest-dev)")
    endif()
  endif()
endif()

# The plain-timer benchmarks need nothing but the platform layer (they are what runs
# under qemu-arm); only vantor_bench needs Google Benchmark.
set(vantor_build_bench ${VANTOR_BUILD_BENCH})
if(VANTOR_BUILD_BENCH)
  find_package(benchmark QUIET)
  if(NOT benchmark_FOUND)
    list(APPEND vantor_left_out "the Google Benchmark benchmarks (no Google Benchmark: libbenchmark-dev)")
  endif()
endif()

set(vantor_build_mkfont OFF)
set(vantor_build_sim OFF)
if(VANTOR_BUILD_TOOLS AND VANTOR_BUILD_DESK_TOOLS)
  find_package(PNG QUIET)
  find_package(Freetype QUIET)
  find_package(ZLIB QUIET)
  if(PNG_FOUND)
    set(vantor_build_sim ON)
  else()
    list(APPEND vantor_left_out "simulator (no libpng: libpng-dev)")
  endif()
  if(PNG_FOUND AND FREETYPE_FOUND AND ZLIB_FOUND)
    set(vantor_build_mkfont ON)
  else()
    list(APPEND vantor_left_out "font converter (needs FreeType, libpng, zlib: libfreetype-dev libpng-dev)")
  endif()
endif()

if(vantor_left_out)
  list(JOIN vantor_left_out "; " vantor_left_out)
  message(STATUS "Vantor: building without ${vantor_left_out}")
endif()
