# SPDX-License-Identifier: BSD-3-Clause
# Targets that other projects link: one name in an installed package and under add_subdirectory.
#
# Each call adds its target to the global property RDB2NIMBRA_PUBLIC_TARGETS, which is what gets installed, and each
# shared library adds its name to RDB2NIMBRA_COMPONENTS, which is what find_package(... COMPONENTS ...) knows.

# rdb2nimbra_public(<target> <name>): other projects link <target> as rdb2nimbra::<name>.
function(rdb2nimbra_public target name)
  add_library(rdb2nimbra::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  set_property(GLOBAL APPEND PROPERTY RDB2NIMBRA_PUBLIC_TARGETS ${target})
endfunction()

# rdb2nimbra_public_library(<target> <name>): the same for a shared library, with its version. The file is
# librdb2nimbra_<name>, and librdb2nimbra for the loader itself.
function(rdb2nimbra_public_library target name)
  set(file rdb2nimbra_${name})
  if(name STREQUAL "rdb2nimbra")
    set(file rdb2nimbra)
  endif()
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${file}
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  set_property(GLOBAL APPEND PROPERTY RDB2NIMBRA_COMPONENTS ${name})
  rdb2nimbra_public(${target} ${name})
endfunction()
