# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The one place that says how strictly every target is compiled: link
# fileshredder_strictness privately, set nothing globally.
add_library(fileshredder_strictness INTERFACE)
target_compile_features(fileshredder_strictness INTERFACE cxx_std_17)
target_compile_options(fileshredder_strictness INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wcast-align -Wconversion -Wsign-conversion -Wformat=2
  # QSKIP() with one argument, as its documentation has it, is more than the standard allows.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
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

# Files of any size, inode numbers and times of any width on 32-bit machines too.
target_compile_definitions(fileshredder_strictness INTERFACE
  _FILE_OFFSET_BITS=64 _TIME_BITS=64)

include(cmake/hardening.cmake)

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
