# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# carry_version_record(TARGET): has the executable TARGET carry the version record
# and the reserved block, to which nothing in it refers. The linker is told that
# somebody does, as the compilers and linkers of 2020 know no other way, and a build
# without them fails.
function(carry_version_record target)
  target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/app/versionrecord.cpp)
  # Link-time optimisation would take over the order of the sections.
  set_source_files_properties(${PROJECT_SOURCE_DIR}/app/versionrecord.cpp PROPERTIES
    COMPILE_OPTIONS -fno-lto)
  target_link_options(${target} PRIVATE
    LINKER:--undefined=fileshredderReservedBlock
    LINKER:--undefined=fileshredderVersionRecord)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -DREADELF=${CMAKE_READELF} -DEXECUTABLE=$<TARGET_FILE:${target}>
            -P ${PROJECT_SOURCE_DIR}/cmake/checkversionrecord.cmake
    VERBATIM)
endfunction()
