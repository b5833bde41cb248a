# Which implementation of each closed interface the library is built against.
# docs/integration.md tells what a replacement has to provide.
set(RDB2NIMBRA_CLIENT "" CACHE STRING "Target or package in place of the embedded database client")
set(RDB2NIMBRA_CLIENT_HEADER "" CACHE STRING "Header that declares riegl::rdb for RDB2NIMBRA_CLIENT")
set(RDB2NIMBRA_MODEL "" CACHE STRING "Target or package in place of the embedded data model")
set(RDB2NIMBRA_MODEL_HEADER "" CACHE STRING "Header that declares the data model for RDB2NIMBRA_MODEL")
set(RDB2NIMBRA_TRANSFORMATION "" CACHE STRING "Target or package in place of the embedded transformation")
set(RDB2NIMBRA_TRANSFORMATION_HEADER "" CACHE STRING "Header that declares Proj::transform")
set(RDB2NIMBRA_CALENDAR "" CACHE STRING "Target or package in place of the embedded calendar")
set(RDB2NIMBRA_CALENDAR_HEADER "" CACHE STRING "Header that declares Ondrel::getWeekDay")

# Links `target` to the chosen implementation of one interface (CLIENT, MODEL, TRANSFORMATION or CALENDAR), or to
# the embedded one, and tells its sources which header to include. A name that is no target is taken as a package.
function(rdb2nimbra_platform target interface embedded)
  set(chosen "${RDB2NIMBRA_${interface}}")
  if("${chosen}" STREQUAL "")
    set(chosen ${embedded})
  elseif(NOT TARGET ${chosen})
    find_package(${chosen} REQUIRED)
  endif()
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL "INTERFACE_LIBRARY")
    set(scope INTERFACE)
  else()
    set(scope PUBLIC)
  endif()
  target_link_libraries(${target} ${scope} ${chosen})
  if(NOT "${RDB2NIMBRA_${interface}_HEADER}" STREQUAL "")
    target_compile_definitions(${target} ${scope}
      RDB2NIMBRA_${interface}_HEADER=\"${RDB2NIMBRA_${interface}_HEADER}\")
  endif()
endfunction()
