# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# What inventory tools read from the built file. The second executable is linked
# as unkindly as a build can be: everything unused is dropped and, where the tools
# can, the whole program is optimised at once. The third is the program as packagers
# strip it.
include(CheckIPOSupported)
check_ipo_supported(RESULT link_time_optimisation OUTPUT reason LANGUAGES CXX)
add_executable(versionrecord_stripped support/emptymain.cpp)
carry_version_record(versionrecord_stripped)
target_compile_features(versionrecord_stripped PRIVATE cxx_std_17)
set(lto "$<$<BOOL:${link_time_optimisation}>:-flto>")
target_compile_options(versionrecord_stripped PRIVATE
  -O2 ${lto} -ffunction-sections -fdata-sections)
target_link_options(versionrecord_stripped PRIVATE -O2 ${lto} -Wl,--gc-sections)
set_target_properties(versionrecord_stripped PROPERTIES AUTOMOC OFF)

set(packaged_executable ${CMAKE_CURRENT_BINARY_DIR}/fileshredder-as-packaged)
add_custom_command(OUTPUT ${packaged_executable}
  COMMAND ${CMAKE_STRIP} --strip-all --remove-section=.comment --remove-section=.note
          -o ${packaged_executable} $<TARGET_FILE:fileshredder>
  DEPENDS fileshredder
  VERBATIM)
add_custom_target(packaged_executable DEPENDS ${packaged_executable})

add_unit_test(tst_versionrecord)
add_dependencies(tst_versionrecord versionrecord_stripped packaged_executable)
target_compile_definitions(tst_versionrecord PRIVATE
  FILESHREDDER_EXECUTABLE="$<TARGET_FILE:fileshredder>"
  STRIPPED_EXECUTABLE="$<TARGET_FILE:versionrecord_stripped>"
  PACKAGED_EXECUTABLE="${packaged_executable}")
