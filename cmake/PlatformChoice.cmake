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
