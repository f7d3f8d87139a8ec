# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The C library's checked variants of the calls would pass by those defined there, and
# asked for files of any size its headers would rename them.
add_library(systemcalls OBJECT support/systemcalls.cpp support/systemcalls.h)
target_compile_options(systemcalls PRIVATE
  -U_FORTIFY_SOURCE -U_FILE_OFFSET_BITS -U_TIME_BITS)
target_link_libraries(systemcalls PRIVATE fileshredder_strictness)
set_target_properties(systemcalls PROPERTIES AUTOMOC OFF)

# intercept_system_calls(TARGET): the calls that TARGET and Qt in it make to the C library
# about files come by tests/support/systemcalls.cpp.
function(intercept_system_calls name)
  target_sources(${name} PRIVATE $<TARGET_OBJECTS:systemcalls>)
  target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
  set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
endfunction()
