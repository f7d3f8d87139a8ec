# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# install_open_folder(FOLDER): makes FOLDER before files are installed there, and what
# leads to it, for everybody to look into. CMake would take away what the umask of
# whoever installs says, also from the permissions that it can be told. A folder that
# exists is left as it is.
function(install_open_folder folder)
  install(CODE "
    get_filename_component(folder \"${folder}\" ABSOLUTE BASE_DIR \"\${CMAKE_INSTALL_PREFIX}\")
    if(NOT EXISTS \"\$ENV{DESTDIR}\${folder}\")
      execute_process(COMMAND install -d -m 755 \"\$ENV{DESTDIR}\${folder}\")
    endif()")
endfunction()
