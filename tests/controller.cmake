# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The controller keeps the history in the home that the user database names. Each
# of its tests brings a passwd file of its own (support/sandboxhome.h), which
# nss_wrapper puts in front of the system's, and refuses to run without.
add_library(controllersupport STATIC
  support/sandboxhome.cpp
  support/sandboxhome.h
  support/signallog.h
  support/walleharness.cpp
  support/walleharness.h)
target_link_libraries(controllersupport
  PUBLIC testsupport controller
  PRIVATE fileshredder_strictness)

add_unit_test(tst_deliveryfence controller)
add_unit_test(tst_droppedurls controller)
add_unit_test(tst_filesystems controller)
add_unit_test(tst_historyfile controller)
add_unit_test(tst_historyrecorder controller)

# The rules of the controller as a model, and both of them side by side.
add_library(controllermodelsupport STATIC
  support/model/modelwalle.cpp
  support/model/modelwalle.h
  support/model/modelwalle_run.cpp
  support/model/twincontrollers.cpp
  support/model/twincontrollers.h)
target_link_libraries(controllermodelsupport
  PUBLIC controllersupport modelsupport
  PRIVATE fileshredder_strictness)

# The controller's threads end with the process by design, and what they hold is
# no leak. The address sanitizer would insist on being loaded first.
foreach(name tst_model_controller tst_walle_admission tst_walle_batches tst_walle_controls
             tst_walle_everyfault tst_walle_history tst_walle_historyload tst_walle_joblist
             tst_walle_kill tst_walle_order tst_walle_queue tst_walle_races tst_walle_run
             tst_walle_starts tst_walle_stop tst_walle_stopreport tst_walle_toggles tst_walle_verdicts)
  add_unit_test(${name} controllersupport)
  set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
    "LD_PRELOAD=libnss_wrapper.so"
    "ASAN_OPTIONS=verify_asan_link_order=0")
endforeach()

# A hundred thousand small files are made and shredded: in memory, not on the disk.
set_property(TEST tst_walle_kill APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")
set_tests_properties(tst_walle_kill PROPERTIES TIMEOUT 600)

foreach(name tst_model_controller tst_walle_starts tst_walle_stopreport)
  target_sources(${name} PRIVATE support/briskthreads.cpp)
endforeach()
target_link_libraries(tst_model_controller PRIVATE controllermodelsupport)
set_property(TEST tst_model_controller APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")

watch_file_calls(tst_walle_everyfault)
set_property(TEST tst_walle_everyfault APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")
