# SPDX-License-Identifier: BSD-3-Clause
# Where programs and libraries are built, and where they look for the libraries beneath them.
#
# Built files have the run path that they are installed with. CMake's usual way, a run path of the build tree that is
# changed at installation, pads it with separators, and an empty element means the current folder: a library there
# would be loaded. The build tree therefore has the folders of the installed one, in an enclosing project too.
set(build_tree ${PROJECT_BINARY_DIR})
get_property(multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(multi_config)
  string(APPEND build_tree "/$<CONFIG>")
endif()

# From the folder of the programs to that of the libraries. Folders of different trees are built side by side.
file(RELATIVE_PATH installed_step ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(built_step ${installed_step})
if(NOT built_step MATCHES "^\\.\\./[^.]")
  set(built_step ../lib)
endif()
cmake_path(SET library_folder NORMALIZE ${build_tree}/bin/${built_step})

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${build_tree}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${library_folder})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${library_folder})

# Libraries find each other in their own folder, programs find them from theirs. Other projects' libraries outside the
# system's folders are found where they were linked; a replacement that an enclosing project builds, in its folder.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
set(program_path "$ORIGIN/${built_step}")
if(NOT installed_step STREQUAL built_step)
  list(APPEND program_path "$ORIGIN/${installed_step}")
endif()

# rdb2nimbra_set_run_paths(<folder>): sets the run path of every target that was made in a folder and below it, and adds
# the target's file to the global property RDB2NIMBRA_RUN_PATH_FILES.
function(rdb2nimbra_set_run_paths folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(kind ${target} TYPE)
    if(kind MATCHES "^(EXECUTABLE|(SHARED|MODULE)_LIBRARY)$")
      set_property(GLOBAL APPEND PROPERTY RDB2NIMBRA_RUN_PATH_FILES $<TARGET_FILE:${target}>)
    endif()
    if(kind STREQUAL "EXECUTABLE")
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "${program_path};${RDB2NIMBRA_REPLACEMENT_FOLDERS}")
    elseif(kind MATCHES "^(SHARED|MODULE)_LIBRARY$")
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN;${RDB2NIMBRA_REPLACEMENT_FOLDERS}")
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(subfolder IN LISTS folders)
    rdb2nimbra_set_run_paths(${subfolder})
  endforeach()
endfunction()
