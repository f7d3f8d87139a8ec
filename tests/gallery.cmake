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
