# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# What users run is hardened: position independent, read-only relocations, guarded
# stacks, checked library calls and checked jumps; and nothing unused is kept.
# Whoever builds may have chosen already: what CXXFLAGS and LDFLAGS say about one of
# these stays.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

set(optimised "$<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>")
string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
set(given_flags "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${build_type}}")

# harden(FLAG FAMILY): adds FLAG unless the compiler does not know it on this
# machine, or a flag with the text FAMILY in it was given.
function(harden flag family)
  string(MAKE_C_IDENTIFIER "HAVE${flag}" known)
  set(CMAKE_REQUIRED_FLAGS -Werror)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known} AND NOT given_flags MATCHES "${family}")
    target_compile_options(fileshredder_strictness INTERFACE "$<${optimised}:${flag}>")
  endif()
endfunction()

harden(-fstack-protector-strong stack-protector)
harden(-fstack-clash-protection stack-clash-protection)
harden(-fcf-protection cf-protection) # x86
harden(-mbranch-protection=standard branch-protection) # arm64

# Some compilers fortify by themselves.
set(CMAKE_REQUIRED_FLAGS "${given_flags} -O2")
check_cxx_source_compiles("
#ifndef _FORTIFY_SOURCE
#error nobody asked for it
#endif
int main() {}" FORTIFIED_ALREADY)
unset(CMAKE_REQUIRED_FLAGS)
if(NOT FORTIFIED_ALREADY AND NOT given_flags MATCHES "_FORTIFY_SOURCE")
  target_compile_definitions(fileshredder_strictness INTERFACE "$<${optimised}:_FORTIFY_SOURCE=2>")
endif()

target_compile_options(fileshredder_strictness INTERFACE
  "$<${optimised}:-ffunction-sections;-fdata-sections>")
if(NOT given_flags MATCHES "_GLIBCXX_ASSERTIONS")
  target_compile_definitions(fileshredder_strictness INTERFACE
    "$<${optimised}:_GLIBCXX_ASSERTIONS>")
endif()

# harden_link(FLAG FAMILY): the same for the linker, where FLAG would come last and win.
set(given_link_flags
  " ${given_flags} ${CMAKE_EXE_LINKER_FLAGS} ${CMAKE_EXE_LINKER_FLAGS_${build_type}}")
function(harden_link flag family)
  if(NOT given_link_flags MATCHES "${family}")
    target_link_options(fileshredder_strictness INTERFACE "${flag}")
  endif()
endfunction()

harden_link("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>" " -(no-|static-)?pie")
harden_link("$<${optimised}:-Wl,-z,relro>" "relro")
harden_link("$<${optimised}:-Wl,-z,now>" "(,|-z ?)(now|lazy)")
harden_link("$<${optimised}:-Wl,-z,noexecstack>" "execstack")
harden_link("$<${optimised}:-Wl,--gc-sections>" "gc-sections")
