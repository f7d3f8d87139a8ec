# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# What scripts/screenshots runs: the windows in every state they have, on a
# virtual desktop, photographed.
add_executable(gallery
  support/dialogdriver.cpp
  support/dialogdriver.h
  support/gallery.cpp
  support/galleryscenes.h
  support/galleryscenes_dialogs.cpp
  support/galleryscenes_history.cpp
  support/galleryscenes_main.cpp
  support/gallerystage.cpp
  support/gallerystage.h
  support/shownwindow.cpp
  support/shownwindow.h)
target_link_libraries(gallery PRIVATE
  fileshredder_strictness endtoendsupport ui resources Qt5::Test)
