# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# watch_file_calls(TARGET): the calls that TARGET and Qt in it make to the C library
# about files come by support/filecalls.cpp. The library's checked variants of them
# would pass by.
function(watch_file_calls name)
  target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/filecalls.cpp)
  target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
  target_compile_options(${name} PRIVATE -U_FORTIFY_SOURCE)
  set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
endfunction()
