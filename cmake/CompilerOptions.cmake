# SPDX-License-Identifier: MIT
# Warnings, hardening, sanitizers and coverage for every target of the project.

set(VELLORA_SANITIZE "" CACHE STRING "Value for -fsanitize=, such as address,undefined or thread")
option(VELLORA_COVERAGE "Instrument for gcov" OFF)
option(VELLORA_FUZZ "Build the fuzzers instead of the tests; only with Clang" OFF)
# Not for those who build with a compiler that is newer than ours and warns of more.
option(VELLORA_WARNINGS_AS_ERRORS "Let no warning pass" OFF)

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2 -Wimplicit-fallthrough)
if(VELLORA_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()

add_compile_definitions(
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_KEYWORDS
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

include(Hardening)

if(VELLORA_SANITIZE)
  add_compile_options(-fsanitize=${VELLORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELLORA_SANITIZE})
  # GCC 12 takes the temporaries of its own instrumentation for uninitialized variables.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

if(VELLORA_FUZZ)
  # Tells libFuzzer what an input reached.
  add_compile_options(-fsanitize=fuzzer-no-link)
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
