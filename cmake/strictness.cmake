# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The one place that says how strictly every target is compiled: link
# fileshredder_strictness privately, set nothing globally.
add_library(fileshredder_strictness INTERFACE)
target_compile_features(fileshredder_strictness INTERFACE cxx_std_17)
target_compile_options(fileshredder_strictness INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wcast-align -Wconversion -Wsign-conversion -Wformat=2
  $<$<BOOL:${FILESHREDDER_WERROR}>:-Werror>)
target_compile_definitions(fileshredder_strictness INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_FOREACH
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_STRICT_ITERATORS
  QT_DEPRECATED_WARNINGS
  QT_DISABLE_DEPRECATED_BEFORE=0x050b00)

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection HAVE_CF_PROTECTION) # x86 only

# What users run is hardened: position independent, read-only relocations, guarded
# stacks, checked library calls and checked jumps; and nothing unused is kept.
set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
target_compile_options(fileshredder_strictness INTERFACE
  "$<${optimised}:-fstack-protector-strong;-fstack-clash-protection>"
  "$<$<AND:${optimised},$<BOOL:${HAVE_CF_PROTECTION}>>:-fcf-protection>"
  "$<${optimised}:-ffunction-sections;-fdata-sections>")
target_compile_definitions(fileshredder_strictness INTERFACE
  "$<${optimised}:_FORTIFY_SOURCE=2;_GLIBCXX_ASSERTIONS>")
target_link_options(fileshredder_strictness INTERFACE
  -pie "$<${optimised}:-Wl,-z,relro,-z,now,-z,noexecstack,--gc-sections>")

if(FILESHREDDER_COVERAGE)
  # Counted exactly across threads.
  target_compile_options(fileshredder_strictness INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(fileshredder_strictness INTERFACE --coverage)
endif()

if(FILESHREDDER_FUZZ)
  target_compile_options(fileshredder_strictness INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(FILESHREDDER_SANITIZE)
  target_compile_options(fileshredder_strictness INTERFACE
    -fsanitize=${FILESHREDDER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fileshredder_strictness INTERFACE -fsanitize=${FILESHREDDER_SANITIZE})
endif()
