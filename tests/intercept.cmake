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

# The same, for the tests that use filecalls.h.
macro(watch_file_calls name)
  intercept_system_calls(${name})
endmacro()

# linked_name(VARIABLE CALL): the name by which the linker knows the C library's CALL,
# such as stat64 or __stat64_time64 for stat. It depends on the machine, on the library
# and on the definitions that ask for files of any size.
function(linked_name variable call)
  if(NOT DEFINED LINKED_NAME_OF_${call})
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/linkednames)
    file(WRITE ${folder}/${call}.cpp "
#include <cstdio>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
extern const void *const address;
const void *const address = reinterpret_cast<const void *>(&::${call});
")
    set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
    try_compile(compiled ${folder} ${folder}/${call}.cpp
      COMPILE_DEFINITIONS -D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64 -U_FORTIFY_SOURCE -fno-lto
      OUTPUT_VARIABLE output
      COPY_FILE ${folder}/${call}.a)
    if(NOT compiled)
      message(FATAL_ERROR "${output}")
    endif()
    execute_process(COMMAND ${CMAKE_NM} --undefined-only ${folder}/${call}.a
      OUTPUT_VARIABLE undefined)
    if(NOT undefined MATCHES " U ([a-z0-9_]*${call}[a-z0-9_]*)")
      message(FATAL_ERROR "not found among the undefined symbols: ${call} in ${undefined}")
    endif()
    set(LINKED_NAME_OF_${call} ${CMAKE_MATCH_1} CACHE INTERNAL "")
  endif()
  set(${variable} ${LINKED_NAME_OF_${call}} PARENT_SCOPE)
endfunction()

# intercept(TARGET CALLS...): the C library calls of the code linked into TARGET
# go to __wrap_CALL() in the test, which may pass them on to __real_CALL(). A function of
# C++ is given by the name that the linker knows.
function(intercept name)
  foreach(call ${ARGN})
    if(call MATCHES "^_Z")
      set(linked ${call})
    else()
      linked_name(linked ${call})
    endif()
    target_link_options(${name} PRIVATE LINKER:--wrap=${linked})
    if(NOT linked STREQUAL call)
      target_compile_definitions(${name} PRIVATE
        __wrap_${call}=__wrap_${linked} __real_${call}=__real_${linked})
    endif()
  endforeach()
endfunction()
