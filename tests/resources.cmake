# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

add_unit_test(tst_resources resources Qt5::Gui)
target_compile_definitions(tst_resources PRIVATE SOURCE_DIRECTORY="${PROJECT_SOURCE_DIR}")

# The committed images need no renderer to build, so these two are run where their
# interpreter and their renderer are at hand.
find_program(PYTHON3_EXECUTABLE python3)
find_program(RSVG_CONVERT_EXECUTABLE rsvg-convert)
set(render_artwork ${PROJECT_SOURCE_DIR}/scripts/render-artwork)
if(PYTHON3_EXECUTABLE)
  add_test(NAME artwork_contrast COMMAND ${PYTHON3_EXECUTABLE} ${render_artwork} --contrast)
endif()
if(PYTHON3_EXECUTABLE AND RSVG_CONVERT_EXECUTABLE)
  add_test(NAME artwork_matches_sources COMMAND ${PYTHON3_EXECUTABLE} ${render_artwork} --check)
endif()
