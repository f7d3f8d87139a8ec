# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Fails unless EXECUTABLE has the two sections that installers read, in their sizes.
execute_process(COMMAND ${READELF} --wide --sections ${EXECUTABLE}
  OUTPUT_VARIABLE sections RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cannot read ${EXECUTABLE}: ${status}")
endif()
# Sizes are written in hexadecimal.
foreach(section ".qarvo=400" ".version=1c0")
  string(REPLACE "=" ";" name_and_size ${section})
  list(GET name_and_size 0 name)
  list(GET name_and_size 1 size)
  if(NOT sections MATCHES " \\${name} +PROGBITS +[0-9a-f]+ [0-9a-f]+ 0*${size} ")
    message(FATAL_ERROR "${EXECUTABLE} has no section ${name} of 0x${size} bytes")
  endif()
endforeach()
