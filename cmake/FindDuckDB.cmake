# Finds DuckDB's C library and offers it as DuckDB::DuckDB.
#
# A DuckDB installed on the machine (libduckdb and duckdb.h, or below DuckDB_ROOT) is taken first;
# else the one that script/setup put under node_modules. That library is copied into the build
# tree's lib/ folder, so that the tree runs in place and stays whole when it is moved.
#
# Sets DuckDB_FOUND, DuckDB_INCLUDE_DIR, DuckDB_LIBRARY, and DuckDB_LOADED_AS: what a program that
# stands in the tree's bin/ folder, and looks in lib/ first, loads it as.

set(_duckdb_modules ${CMAKE_CURRENT_LIST_DIR}/../node_modules)
get_filename_component(_duckdb_modules ${_duckdb_modules} ABSOLUTE)

find_path(DuckDB_SYSTEM_INCLUDE_DIR duckdb.h)
find_library(DuckDB_SYSTEM_LIBRARY duckdb)
mark_as_advanced(DuckDB_SYSTEM_INCLUDE_DIR DuckDB_SYSTEM_LIBRARY)

if(DuckDB_SYSTEM_INCLUDE_DIR AND DuckDB_SYSTEM_LIBRARY)
  set(DuckDB_INCLUDE_DIR ${DuckDB_SYSTEM_INCLUDE_DIR})
  set(DuckDB_LIBRARY ${DuckDB_SYSTEM_LIBRARY})
  set(DuckDB_LOADED_AS ${DuckDB_SYSTEM_LIBRARY})
else()
  # Globbed on every configure, never cached: npm may come and go between two of them.
  file(GLOB _duckdb_header ${_duckdb_modules}/duckdb/src/duckdb/src/include/duckdb.h)
  file(GLOB _duckdb_library ${_duckdb_modules}/@duckdb/node-bindings-*/libduckdb.so)
  if(_duckdb_header AND _duckdb_library)
    list(GET _duckdb_library 0 _duckdb_library)
    get_filename_component(DuckDB_INCLUDE_DIR ${_duckdb_header} DIRECTORY)
    set(DuckDB_LIBRARY ${PROJECT_BINARY_DIR}/lib/libduckdb.so)
    set(DuckDB_LOADED_AS libduckdb.so)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
    file(COPY_FILE ${_duckdb_library} ${DuckDB_LIBRARY} ONLY_IF_DIFFERENT)
  endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(DuckDB
  REQUIRED_VARS DuckDB_LIBRARY DuckDB_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "install it, or run script/setup, which fetches it through npm")

if(DuckDB_FOUND AND NOT TARGET DuckDB::DuckDB)
  # GLOBAL: rooms that link a room that links DuckDB need the target in their own scope.
  add_library(DuckDB::DuckDB SHARED IMPORTED GLOBAL)
  set_target_properties(DuckDB::DuckDB PROPERTIES
    IMPORTED_LOCATION ${DuckDB_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${DuckDB_INCLUDE_DIR})
  if(NOT DuckDB_LIBRARY STREQUAL "${DuckDB_SYSTEM_LIBRARY}")
    set_target_properties(DuckDB::DuckDB PROPERTIES IMPORTED_SONAME libduckdb.so)
  endif()
endif()
