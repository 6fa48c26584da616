# peer_sqlite: SQLite from its one-file source, fetched when a bench that compares with it is built.
# Where it could not be fetched, sqlite3.h defines SQLITE_MISSING and nothing else.
if(TARGET peer_sqlite)
  return()
endif()
set(sqlite_dir ${CMAKE_BINARY_DIR}/peers/sqlite)
add_custom_command(OUTPUT ${sqlite_dir}/sqlite3.c ${sqlite_dir}/sqlite3.h
  COMMAND ${CMAKE_SOURCE_DIR}/scripts/fetch_sqlite.sh ${sqlite_dir}
  COMMENT "Fetching SQLite's source" VERBATIM)
add_library(peer_sqlite STATIC EXCLUDE_FROM_ALL ${sqlite_dir}/sqlite3.c ${sqlite_dir}/sqlite3.h)
target_include_directories(peer_sqlite SYSTEM PUBLIC ${sqlite_dir})
# its quickest form: one thread, no counting of memory
target_compile_definitions(peer_sqlite PRIVATE
  SQLITE_THREADSAFE=0 SQLITE_DEFAULT_MEMSTATUS=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_DQS=0)
target_compile_options(peer_sqlite PRIVATE -w -O2)
