# SPDX-License-Identifier: MIT
# Warnings, sanitizers and coverage for every target of the project.

set(VELLORA_SANITIZE "" CACHE STRING "Value for -fsanitize=, such as address,undefined or thread")
option(VELLORA_COVERAGE "Instrument for gcov" OFF)

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2 -Wimplicit-fallthrough -Werror)

add_compile_definitions(
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(VELLORA_SANITIZE)
  add_compile_options(-fsanitize=${VELLORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELLORA_SANITIZE})
  # GCC 12 takes the temporaries of its own instrumentation for uninitialized variables.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

if(VELLORA_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path)
  add_link_options(--coverage)
endif()

if(CMAKE_CXX_CLANG_TIDY)
  # What moc writes is not ours to tidy; clang-tidy wants one check at least.
  file(WRITE "${CMAKE_BINARY_DIR}/.clang-tidy"
    "Checks: '-*,portability-simd-intrinsics'\nWarningsAsErrors: ''\n")
endif()
