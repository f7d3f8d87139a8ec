# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# What inventory tools read from the built file. The second executable is linked
# as unkindly as a build can be: everything unused is dropped and the whole
# program is optimised at once.
add_executable(versionrecord_stripped support/emptymain.cpp
  ${PROJECT_SOURCE_DIR}/app/versionrecord.cpp)
target_compile_features(versionrecord_stripped PRIVATE cxx_std_17)
target_compile_options(versionrecord_stripped PRIVATE -O2 -flto -ffunction-sections -fdata-sections)
target_link_options(versionrecord_stripped PRIVATE -O2 -flto -Wl,--gc-sections)
set_target_properties(versionrecord_stripped PROPERTIES AUTOMOC OFF)
set_source_files_properties(${PROJECT_SOURCE_DIR}/app/versionrecord.cpp PROPERTIES
  COMPILE_OPTIONS -fno-lto)

add_unit_test(tst_versionrecord)
add_dependencies(tst_versionrecord fileshredder versionrecord_stripped)
target_compile_definitions(tst_versionrecord PRIVATE
  FILESHREDDER_EXECUTABLE="$<TARGET_FILE:fileshredder>"
  STRIPPED_EXECUTABLE="$<TARGET_FILE:versionrecord_stripped>")
