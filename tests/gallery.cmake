# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# How the windows look: what scripts/screenshots runs, the windows in every state
# they have, on a virtual desktop, photographed; and whether their texts fit.
add_executable(gallery
  support/gallery.cpp
  support/galleryscenes.h
  support/galleryscenes_dialogs.cpp
  support/galleryscenes_history.cpp
  support/galleryscenes_main.cpp
  support/gallerystage.cpp
  support/gallerystage.h)
target_link_libraries(gallery PRIVATE
  fileshredder_strictness uisupport endtoendsupport resources)

add_unit_test(tst_fonts uisupport resources)
set_property(TEST tst_fonts APPEND PROPERTY ENVIRONMENT
  "LD_PRELOAD=libnss_wrapper.so"
  "ASAN_OPTIONS=verify_asan_link_order=0")

# Once more as on denser screens.
get_test_property(tst_fonts ENVIRONMENT unit_test_environment)
foreach(scale 1.25 1.5 2 3)
  add_test(NAME tst_fonts_scaled_${scale} COMMAND tst_fonts)
  set_tests_properties(tst_fonts_scaled_${scale} PROPERTIES
    ENVIRONMENT "${unit_test_environment};QT_SCALE_FACTOR=${scale}"
    FAIL_REGULAR_EXPRESSION "QWARN"
    TIMEOUT 300)
endforeach()
