# SPDX-License-Identifier: BSD-3-Clause
# Debian packages by cpack: librdb2nimbra1 (component runtime), librdb2nimbra-dev (development) and rdb2nimbra-tools
# (tools). Preset `package` configures them; scripts/check-packages builds and checks them.
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(debian ${packaging}/debian)
set(compressed ${PROJECT_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${compressed})

# rdb2nimbra_compress(<file> <out>): gzip without a name and a time, as Debian's policy and reproducible packages want.
find_program(RDB2NIMBRA_GZIP gzip REQUIRED)
function(rdb2nimbra_compress file out)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  execute_process(COMMAND ${RDB2NIMBRA_GZIP} -9nc ${file} OUTPUT_FILE ${compressed}/${out} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

rdb2nimbra_compress(${debian}/changelog changelog.Debian.gz)
rdb2nimbra_compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)
set(packages librdb2nimbra${PROJECT_VERSION_MAJOR} librdb2nimbra-dev rdb2nimbra-tools)
set(components runtime development tools)
foreach(package component IN ZIP_LISTS packages components)
  install(FILES ${compressed}/changelog.Debian.gz ${compressed}/changelog.gz ${debian}/copyright
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
endforeach()

# Manual pages name the commands and options that the built programs print.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
foreach(program rdbtool nimbra-host)
  string(REPLACE "-" "_" target rdb2nimbra_${program})
  set(page ${compressed}/${program}.1)
  add_custom_command(OUTPUT ${page}.gz DEPENDS ${target} ${packaging}/man/${program}.1.in ${packaging}/man/write-manual
    COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=$<TARGET_FILE_DIR:rdb2nimbra>
      ${Python3_EXECUTABLE} ${packaging}/man/write-manual ${packaging}/man/${program}.1.in ${page}
      ${PROJECT_VERSION} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>
    COMMAND ${RDB2NIMBRA_GZIP} -9nf ${page} VERBATIM)
  list(APPEND pages ${page}.gz)
endforeach()
add_custom_target(rdb2nimbra_manual ALL DEPENDS ${pages})
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME rdb2nimbra)
set(CPACK_PACKAGE_VENDOR "rdb2nimbra developers")
set(CPACK_PACKAGE_CONTACT "rdb2nimbra developers <developers@rdb2nimbra.invalid>")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Packages depend on the libraries of others by dpkg-shlibdeps, and on each other with the same version.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)

# A description begins with a line of its own for each package, not with that of the project.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(summary "loads laser-scanner databases onto a visualisation grid")
set(about "rdb2nimbra reads point clouds, shots with waveforms and trajectories of laser
scanners, block by block and without a copy, onto a grid of typed arrays. It
settles the time scale, projects positions and reads lever-arm files.
")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME librdb2nimbra${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${debian}/triggers)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/WithoutLdconfigScripts.cmake)
install(FILES ${debian}/librdb2nimbra.lintian-overrides RENAME librdb2nimbra${PROJECT_VERSION_MAJOR}
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT runtime)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${summary}
${about}
This package contains the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME librdb2nimbra-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${summary} (headers)
${about}
This package contains the headers, the CMake package and the pkg-config files.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME rdb2nimbra-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "${summary} (programs)
${about}
This package contains rdbtool, which makes, imports, describes and verifies
databases, and nimbra-host, which loads them and shows the grid.")

# The source package has what git tracks; a build folder or an editor's file inside the sources is left out.
set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME rdb2nimbra-${PROJECT_VERSION})
set(CPACK_SOURCE_IGNORE_FILES "/\\\\.git/;/\\\\.git$;^${PROJECT_SOURCE_DIR}/build/;^${PROJECT_SOURCE_DIR}/demo/;/__pycache__/;\\\\.swp$")
include(CPack)
