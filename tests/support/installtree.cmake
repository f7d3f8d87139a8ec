# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Installs what is built in BUILD_FOLDER to INSTALL_FOLDER and looks at what came of
# it: every file at its place and no other, icons of the size that their folder
# promises, texts with every blank filled in and with VERSION. It is installed by
# somebody whose new files nobody else may read, which is not what is installed.

file(REMOVE_RECURSE ${INSTALL_FOLDER})
execute_process(
  COMMAND sh -c "umask 077 && \"$@\"" --
          ${CMAKE_COMMAND} --install ${BUILD_FOLDER} --prefix ${INSTALL_FOLDER}
  OUTPUT_QUIET RESULT_VARIABLE status)
if(status)
  message(FATAL_ERROR "the installation failed: ${status}")
endif()

set(metainfo share/metainfo/arpa.home.brenvale.fileshredder.metainfo.xml)
set(expected
  bin/fileshredder
  share/applications/fileshredder.desktop
  share/icons/hicolor/scalable/apps/fileshredder.svg
  share/man/man1/fileshredder.1
  share/man/zh_CN/man1/fileshredder.1
  ${metainfo})
foreach(size 16 24 32 48 64 128 256)
  set(icon share/icons/hicolor/${size}x${size}/apps/fileshredder.png)
  list(APPEND expected ${icon})
  # Width and height stand in the header of a PNG, four bytes each, from byte 16.
  file(READ ${INSTALL_FOLDER}/${icon} found HEX OFFSET 16 LIMIT 8)
  math(EXPR wanted "${size} * 0x100000001" OUTPUT_FORMAT HEXADECIMAL)
  string(REPLACE "0x" "0000000" wanted ${wanted})
  string(REGEX MATCH "................$" wanted ${wanted})
  if(NOT found STREQUAL wanted)
    message(SEND_ERROR "${icon} is of another size: ${found}")
  endif()
endforeach()

file(GLOB_RECURSE found RELATIVE ${INSTALL_FOLDER} ${INSTALL_FOLDER}/*)
list(SORT expected)
list(SORT found)
if(NOT found STREQUAL expected)
  message(SEND_ERROR "expected: ${expected}\ninstalled: ${found}")
endif()

execute_process(COMMAND find ${INSTALL_FOLDER} ! -perm -o=r -o -type d ! -perm -o=x
  OUTPUT_VARIABLE closed)
if(closed)
  message(SEND_ERROR "not for everybody:\n${closed}")
endif()

file(READ ${INSTALL_FOLDER}/${metainfo} text)
if(text MATCHES "@" OR NOT text MATCHES "<release version=\"${VERSION}\"")
  message(SEND_ERROR "${metainfo} is not filled in")
endif()
