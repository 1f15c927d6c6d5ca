# SPDX-License-Identifier: MIT
find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)

# Adds to a library what wayland-scanner makes of the protocol: the header <wayland-NAME.h>, for a
# client, and its code in C.
function(vellora_wayland_protocol target xml)
  get_filename_component(name "${xml}" NAME_WE)
  set(header "${CMAKE_CURRENT_BINARY_DIR}/wayland-${name}.h")
  set(code "${CMAKE_CURRENT_BINARY_DIR}/wayland-${name}.c")
  add_custom_command(OUTPUT "${header}" "${code}"
    COMMAND "${WAYLAND_SCANNER}" client-header "${xml}" "${header}"
    COMMAND "${WAYLAND_SCANNER}" private-code "${xml}" "${code}"
    DEPENDS "${xml}" VERBATIM)
  target_sources(${target} PRIVATE "${header}" "${code}")
  target_include_directories(${target} SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
endfunction()

# Adds to a library the header <wayland-NAME-server.h>, for a compositor. The code is the client's.
function(vellora_wayland_server_protocol target xml)
  get_filename_component(name "${xml}" NAME_WE)
  set(header "${CMAKE_CURRENT_BINARY_DIR}/wayland-${name}-server.h")
  add_custom_command(OUTPUT "${header}"
    COMMAND "${WAYLAND_SCANNER}" server-header "${xml}" "${header}"
    DEPENDS "${xml}" VERBATIM)
  target_sources(${target} PRIVATE "${header}")
  target_include_directories(${target} SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
endfunction()
