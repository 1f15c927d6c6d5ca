# SPDX-License-Identifier: MIT
# Every test runs in a private desktop (Scripts/in-desktop): its own HOME, XDG folders and session
# bus, so tests neither meet each other nor the person who runs them.

# Seconds after which a test has hung. More than ten times what the slowest one takes on two idle
# processors: on a busy machine each takes as much longer as it gets less of them.
set(VELLORA_TEST_LIMIT 900)

set(VELLORA_WAYLAND_DESKTOPS sway kwin_wayland kwin_xwayland gnome gnome_xwayland weston)

# vellora_add_test(NAME name
#                  SOURCES file... [LIBRARIES target...]     a Qt Test class and its main, or
#                  COMMAND program [argument...]             a program, such as a Python script
#                  [DESKTOP desktop...]  one entry each; default: offscreen (no display)
#                  [SCREENS sizes...]    one entry each, such as 1280x800 or 1280x800,1024x768
#                  [SCALE factor...]     one entry each; default: 1
#                  [PANEL panel...]      one entry each; default: none
#                  [LABELS label...]     default: the name of the folder, in lower case
#                  [ENVIRONMENT NAME=value...]
#                  [WHOLE_STACKS]        tells leaks on Wayland by what made them; recognition then
#                                        takes six times as long
#                  [INSTALLED]           needs an installation: $VELLORA_INSTALLED, made before
#                  [OWN_THREADS])        has threads that share through the standard library's locks.
#                                        Only such tests run under the thread sanitizer, which sees
#                                        nothing of the locks inside Qt and takes what they guard
#                                        for races
#
# Entries are called name@desktop@screens@scale@panel, as far as those are given. `Scripts/in-desktop
# --list` names the desktops and panels. A desktop that is not installed is a skipped test for a
# person, a failed one when CI=true.
function(vellora_add_test)
  cmake_parse_arguments(PARSE_ARGV 0 arg "WHOLE_STACKS;OWN_THREADS;INSTALLED" "NAME"
    "SOURCES;LIBRARIES;COMMAND;DESKTOP;SCREENS;SCALE;PANEL;LABELS;ENVIRONMENT")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "vellora_add_test(${arg_NAME}): what is ${arg_UNPARSED_ARGUMENTS}?")
  endif()
  if(NOT arg_NAME OR (arg_SOURCES AND arg_COMMAND) OR NOT (arg_SOURCES OR arg_COMMAND))
    message(FATAL_ERROR "vellora_add_test: needs a NAME and either SOURCES or a COMMAND")
  endif()

  if(arg_SOURCES)
    add_executable(${arg_NAME} ${arg_SOURCES})
    target_include_directories(${arg_NAME} PRIVATE
      "${CMAKE_SOURCE_DIR}/Sources" "${CMAKE_SOURCE_DIR}/Tests")
    target_link_libraries(${arg_NAME} PRIVATE Qt6::Test ${arg_LIBRARIES})
    set_target_properties(${arg_NAME} PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    # In every test, so that none has Qt Test's own limits by mistake.
    set_property(SOURCE ${arg_SOURCES} APPEND PROPERTY COMPILE_OPTIONS
      -include "${CMAKE_SOURCE_DIR}/Tests/Support/Patience.h")
    set(arg_COMMAND "$<TARGET_FILE:${arg_NAME}>")
  endif()

  if(VELLORA_SANITIZE STREQUAL "thread" AND NOT arg_OWN_THREADS)
    return()
  endif()
  get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  string(TOLOWER "${folder}" label)
  vellora_default(arg_LABELS "${label}")

  vellora_default(arg_DESKTOP "offscreen")
  vellora_default(arg_SCREENS "default")
  vellora_default(arg_SCALE "default")
  vellora_default(arg_PANEL "default")
  foreach(desktop IN LISTS arg_DESKTOP)
    foreach(screens IN LISTS arg_SCREENS)
      foreach(scale IN LISTS arg_SCALE)
        foreach(panel IN LISTS arg_PANEL)
          vellora_add_entry("${desktop}" "${screens}" "${scale}" "${panel}")
        endforeach()
      endforeach()
    endforeach()
  endforeach()
endfunction()

# One CTest entry; reads the arguments of the calling vellora_add_test.
function(vellora_add_entry desktop screens scale panel)
  set(name "${arg_NAME}")
  set(options "${desktop}")
  if(NOT desktop STREQUAL "offscreen")
    string(APPEND name "@${desktop}")
  endif()
  if(NOT screens STREQUAL "default")
    string(APPEND name "@${screens}")
    list(APPEND options -s "${screens}")
  endif()
  if(NOT scale STREQUAL "default")
    if(NOT scale EQUAL 1)
      string(APPEND name "@${scale}x")
    endif()
    list(APPEND options --scale "${scale}")
  endif()
  if(NOT panel STREQUAL "default")
    string(APPEND name "@${panel}")
    list(APPEND options --panel "${panel}")
  endif()

  add_test(NAME "${name}"
    COMMAND "${CMAKE_SOURCE_DIR}/Scripts/in-desktop" ${options} -- ${arg_COMMAND})
  set(suppressions "${CMAKE_SOURCE_DIR}/Tests/Support/sanitizers")
  set(asan detect_stack_use_after_return=1)
  set(leaks leaks.txt)
  if(arg_WHOLE_STACKS)
    string(APPEND asan ":fast_unwind_on_malloc=0:malloc_context_size=10")
  elseif(desktop IN_LIST VELLORA_WAYLAND_DESKTOPS)
    set(leaks leaks-wayland.txt)
  endif()
  set_tests_properties("${name}" PROPERTIES
    LABELS "${arg_LABELS}"
    TIMEOUT ${VELLORA_TEST_LIMIT}
    SKIP_RETURN_CODE 77
    ENVIRONMENT "\
ASAN_OPTIONS=${asan};\
UBSAN_OPTIONS=print_stacktrace=1;\
LSAN_OPTIONS=suppressions=${suppressions}/${leaks}:print_suppressions=0;\
TSAN_OPTIONS=suppressions=${suppressions}/threads.txt:second_deadlock_stack=1;\
QT_FORCE_STDERR_LOGGING=1;\
VELLORA_INSTALLED=${VELLORA_INSTALLED};\
${arg_ENVIRONMENT}")
  if(arg_INSTALLED)
    set_tests_properties("${name}" PROPERTIES FIXTURES_REQUIRED installed)
  endif()
endfunction()

macro(vellora_default variable)
  if(NOT ${variable})
    set(${variable} ${ARGN})
  endif()
endmacro()
