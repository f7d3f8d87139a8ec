# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Configures SOURCE_FOLDER in BUILD_FOLDER twice, with and without linker flags from
# outside, and looks at the command that would link the program: hardened where
# nobody says otherwise, else as it was said. MAKE_PROGRAM is that of GENERATOR.

# link_command(FLAGS): the linker flags of the program, given FLAGS, in "command".
function(link_command flags)
  file(REMOVE_RECURSE ${BUILD_FOLDER})
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE_FOLDER} -B ${BUILD_FOLDER} -G ${GENERATOR}
            -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${COMPILER}
            -DCMAKE_BUILD_TYPE=Release -DFILESHREDDER_TESTS=OFF
            -DCMAKE_EXE_LINKER_FLAGS=${flags}
    OUTPUT_QUIET RESULT_VARIABLE status)
  if(status)
    message(FATAL_ERROR "cannot configure with ${flags}")
  endif()
  if(EXISTS ${BUILD_FOLDER}/build.ninja)
    file(STRINGS ${BUILD_FOLDER}/build.ninja command REGEX "LINK_FLAGS.*fileshredderVersionRecord")
  else()
    file(READ ${BUILD_FOLDER}/app/CMakeFiles/fileshredder.dir/link.txt command)
  endif()
  set(command ${command} PARENT_SCOPE)
endfunction()

set(hardening -pie -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--gc-sections)

link_command("")
foreach(flag ${hardening})
  if(NOT "${command} " MATCHES " ${flag} ")
    message(SEND_ERROR "${flag} is missing: ${command}")
  endif()
endforeach()

set(given "-no-pie -Wl,-z,norelro -Wl,-z,lazy -Wl,-z,execstack -Wl,--no-gc-sections")
link_command("${given}")
foreach(flag ${hardening})
  if("${command} " MATCHES " ${flag} ")
    message(SEND_ERROR "${flag} overrules what was given: ${command}")
  endif()
endforeach()
if(NOT command MATCHES "${given}")
  message(SEND_ERROR "lost what was given: ${command}")
endif()
