# SPDX-License-Identifier: MIT
# What makes a mistake in the program harder to use against its user, in every build; and nothing of
# the machine that built it in what is handed on. Tests/Install checks the result.

# Libraries come from the places that the system names, never from a path in the program: an empty
# entry there, as CMake leaves for installing, is the current folder.
set(CMAKE_SKIP_RPATH ON)

# All addresses of functions are looked up at the start and read-only from then on.
add_link_options(-Wl,-z,relro -Wl,-z,now)

# The sanitizers check more than all of these.
if(NOT VELLORA_SANITIZE)
  # A program that can be loaded at any address.
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)

  add_compile_options(-fstack-protector-strong)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64|i[3-6]86)$")
    add_compile_options(-fcf-protection)
  endif()
  # The standard library checks indices and iterators.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  # The C library checks sizes that the compiler knows, which needs optimisation. Packagers may have
  # given a level of their own.
  if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "_FORTIFY_SOURCE")
    set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
    add_compile_options("$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
  endif()
endif()

# Debuggers and coverage want the real paths.
add_compile_options(
  "$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build;-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>")
