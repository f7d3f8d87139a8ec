# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Windows met as their user meets them, with the real controller behind them.
add_library(uisupport STATIC
  support/dialogdriver.cpp
  support/dialogdriver.h
  support/promptly.h
  support/shownwindow.cpp
  support/shownwindow.h
  support/windowtestmain.cpp
  support/windowtestmain.h)
target_link_libraries(uisupport
  PUBLIC controllersupport ui
  PRIVATE fileshredder_strictness)

add_unit_test(tst_accessiblerows ui resources)
add_unit_test(tst_historyrowframe ui resources)
add_unit_test(tst_historyrows ui resources)
add_unit_test(tst_reporttexts ui)

# A window's controller keeps the history, so these bring a home of their own, as the
# controller's tests do. The last two are for the address sanitizer, which would insist on
# being loaded first and alone.
set(window_test_environment
  "NSS_WRAPPER_DISABLE_DEEPBIND=1"
  "ASAN_OPTIONS=verify_asan_link_order=0")
set(window_tests tst_mainwindow_actions tst_mainwindow_drawing tst_mainwindow_flow
                 tst_mainwindow_history tst_mainwindow_historyload tst_mainwindow_input
                 tst_mainwindow_layout tst_mainwindow_posts tst_mainwindow_refusals
                 tst_mainwindow_reports tst_mainwindow_runs
                 tst_mainwindow_setup tst_mainwindow_slots tst_mainwindow_states
                 tst_mainwindow_styles tst_mainwindow_table tst_soak)
foreach(name IN LISTS window_tests)
  add_unit_test(${name} uisupport resources)
  set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
    "LD_PRELOAD=libnss_wrapper.so" ${window_test_environment})
endforeach()

intercept(tst_mainwindow_posts _ZN5Walle11postCommandEi) # what the window asks for, unheard

target_sources(tst_soak PRIVATE
  support/guiwatchdog.cpp support/guiwatchdog.h support/restlessuser.cpp support/restlessuser.h)
set_target_properties(tst_soak PROPERTIES ENABLE_EXPORTS ON) # stacks with names
target_link_libraries(tst_soak PRIVATE modelsupport)
set_property(TEST tst_soak APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")
set_tests_properties(tst_soak PROPERTIES TIMEOUT 3600) # as long as it is told to take

# The offscreen platform's screen is small and of one size. On a real one leaks are not
# looked for: Qt's X11 and font code keeps memory until the process ends.
add_executable(tst_mainwindow_screen tst_mainwindow_screen.cpp)
target_link_libraries(tst_mainwindow_screen PRIVATE fileshredder_strictness uisupport resources)
add_test(NAME tst_mainwindow_screen
  COMMAND xvfb-run -a -s "-screen 0 1920x1080x24"
          env LD_PRELOAD=libnss_wrapper.so $<TARGET_FILE:tst_mainwindow_screen>)
set_tests_properties(tst_mainwindow_screen PROPERTIES
  ENVIRONMENT "QT_QPA_PLATFORM=xcb;LC_ALL=C.UTF-8;LSAN_OPTIONS=detect_leaks=0;${window_test_environment}"
  FAIL_REGULAR_EXPRESSION "QWARN"
  LABELS endtoend
  TIMEOUT 300)
