# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The real program on a virtual desktop of its own, met with a pointer and by
# looking at the screen. Needs Xvfb, openbox, xdotool, wmctrl, xprop, xclip
# and nss_wrapper; the programs below start and end them.

set(sanitizer_runtime)
if(FILESHREDDER_SANITIZE MATCHES "address")
  execute_process(
    COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
    OUTPUT_VARIABLE sanitizer_runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()

add_executable(dragsource support/dragsource.cpp)
target_link_libraries(dragsource PRIVATE fileshredder_strictness Qt5::Widgets)

add_library(selfdriver MODULE support/selfdriver.cpp)
target_link_libraries(selfdriver PRIVATE fileshredder_strictness Qt5::Widgets)

add_library(endtoendsupport STATIC
  support/desktopsession.cpp
  support/desktopsession.h
  support/drivenshredder.cpp
  support/drivenshredder.h
  support/expectedbytes.cpp
  support/expectedbytes.h
  support/runningshredder.cpp
  support/runningshredder.h
  support/screenreader.cpp
  support/screenreader.h
  support/shredderuser.cpp
  support/shredderuser.h
  support/tiedprocess.cpp
  support/tiedprocess.h
  support/windowmap.h)
target_link_libraries(endtoendsupport
  PUBLIC testsupport Qt5::DBus Qt5::Gui
  PRIVATE fileshredder_strictness)
target_compile_definitions(endtoendsupport PRIVATE
  SHREDDER_PROGRAM="$<TARGET_FILE:fileshredder>"
  SELF_DRIVER_LIBRARY="$<TARGET_FILE:selfdriver>"
  DRAG_SOURCE_PROGRAM="$<TARGET_FILE:dragsource>"
  SANITIZER_RUNTIME="${sanitizer_runtime}")
add_dependencies(endtoendsupport fileshredder dragsource selfdriver)

# What scripts/tour runs: the same harness, as a demonstration.
add_executable(guidedtour support/guidedtour.cpp)
target_link_libraries(guidedtour PRIVATE fileshredder_strictness endtoendsupport)

add_library(endtoendfixture STATIC support/endtoendtest.cpp support/endtoendtest.h)
target_link_libraries(endtoendfixture
  PUBLIC endtoendsupport Qt5::Test
  PRIVATE fileshredder_strictness)
target_compile_definitions(endtoendfixture PRIVATE
  PICTURE_FOLDER="${CMAKE_CURRENT_BINARY_DIR}/endtoend-pictures")

# Leaks are not looked for: Qt's X11 and font code keeps memory until the process
# ends, and the program's threads end with the process by design.
foreach(name tst_endtoend_accessibility tst_endtoend_admission tst_endtoend_ends
             tst_endtoend_filemanager tst_endtoend_history tst_endtoend_medium
             tst_endtoend_process tst_endtoend_screens tst_endtoend_shredding
             tst_endtoend_wayland tst_endtoend_windows)
  add_executable(${name} ${name}.cpp)
  target_link_libraries(${name} PRIVATE fileshredder_strictness endtoendfixture)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=0"
    FAIL_REGULAR_EXPRESSION "QWARN"
    LABELS endtoend
    TIMEOUT 600)
endforeach()
target_link_libraries(tst_endtoend_medium PRIVATE mediumsupport)
target_compile_definitions(tst_endtoend_wayland PRIVATE
  IMAGE_FOLDER="${PROJECT_SOURCE_DIR}/resources/images")
