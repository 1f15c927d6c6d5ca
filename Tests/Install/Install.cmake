# SPDX-License-Identifier: MIT
# Installs what is built in `build` into `prefix`, with nothing there of an earlier time.
file(REMOVE_RECURSE "${prefix}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${build}" --prefix "${prefix}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
