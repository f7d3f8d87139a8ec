# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# What an installation puts where, from the icons' sizes to the manual.
add_test(NAME install_tree COMMAND ${CMAKE_COMMAND}
  -DBUILD_FOLDER=${PROJECT_BINARY_DIR}
  -DINSTALL_FOLDER=${CMAKE_CURRENT_BINARY_DIR}/installed
  -DVERSION=${PROJECT_VERSION}
  -P ${CMAKE_CURRENT_SOURCE_DIR}/support/installtree.cmake)
