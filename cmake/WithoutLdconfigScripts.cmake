# SPDX-License-Identifier: BSD-3-Clause
# Run by cpack on the packages it has made: removes the maintainer scripts that call ldconfig. cpack adds them to every
# package with libraries; the trigger `ldconfig` does their work once for all packages of an installation.
find_program(dpkg_deb dpkg-deb REQUIRED)
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(folder ${package}.contents)
  file(REMOVE_RECURSE ${folder})
  execute_process(COMMAND ${dpkg_deb} --raw-extract ${package} ${folder} COMMAND_ERROR_IS_FATAL ANY)
  foreach(script postinst postrm)
    file(REMOVE ${folder}/DEBIAN/${script})
  endforeach()
  execute_process(COMMAND ${dpkg_deb} --root-owner-group -Zxz --build ${folder} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${folder})
endforeach()
