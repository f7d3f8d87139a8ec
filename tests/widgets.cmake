# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# The linker drops the image bundle from a static library; a test that looks at
# pictures names it.
add_unit_test(tst_accessiblewidgets widgets resources)
add_unit_test(tst_customdialog widgets resources)
add_unit_test(tst_customdialog_running widgets resources)
add_unit_test(tst_customtitlebar widgets)
add_unit_test(tst_elision widgets)
add_unit_test(tst_stylesheets widgets resources)
add_unit_test(tst_zzcontainers widgets)
add_unit_test(tst_zzscrollbutton widgets)
add_unit_test(tst_zztablecell widgets resources)
add_unit_test(tst_zztablecell_looks widgets resources)
