# SPDX-License-Identifier: MIT
# Run by `cmake --install`: writes the entries that name the program by its path, for the prefix that
# was asked for just now.
#
#   entries    where they go, below the prefix; the template of each is its name and ".in"
#   templates  the folder of the templates
#   folder     a folder to write to
#   bindir     the folder of the program, below the prefix or absolute

get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
get_filename_component(program "${bindir}/vellora" ABSOLUTE BASE_DIR "${prefix}")
if(NOT DEFINED ENV{DESTDIR} AND EXISTS "${program}")
  # KWin knows a process by the path that the system has of it, without links.
  file(REAL_PATH "${program}" program)
endif()
if(NOT program MATCHES "^[-A-Za-z0-9/._+~@ ]+$")
  # Entries, bus and systemd each quote in a way of their own; only blanks are alike in all.
  message(FATAL_ERROR "An entry cannot name a program with this path: ${program}")
endif()
set(command "${program}")
if(program MATCHES " ")
  set(command "\"${program}\"")
endif()

foreach(entry IN LISTS entries)
  get_filename_component(name "${entry}" NAME)
  get_filename_component(target "${entry}" DIRECTORY)
  get_filename_component(target "${target}" ABSOLUTE BASE_DIR "${prefix}")
  configure_file("${templates}/${name}.in" "${folder}/${name}" @ONLY)
  file(INSTALL "${folder}/${name}" DESTINATION "${target}")
endforeach()
