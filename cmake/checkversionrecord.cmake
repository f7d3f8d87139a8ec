# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Fails unless EXECUTABLE has the two sections that installers read, in their sizes.
execute_process(COMMAND ${READELF} --wide --sections ${EXECUTABLE}
  OUTPUT_VARIABLE sections RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cannot read ${EXECUTABLE}: ${status}")
endif()
foreach(section "\\.qarvo +PROGBITS +[0-9a-f]+ [0-9a-f]+ 0*400 "
                "\\.version +PROGBITS +[0-9a-f]+ [0-9a-f]+ 0*1c0 ")
  if(NOT sections MATCHES "${section}")
    message(FATAL_ERROR "${EXECUTABLE} has no section ${section}")
  endif()
endforeach()
