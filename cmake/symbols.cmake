# split_symbols(TARGET): what is shipped has no symbols; they stand beside it in symbols/, and the
# program names the file that has them, for debuggers.
function(split_symbols target)
  if(NOT WIN32 OR NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  set(folder ${CMAKE_BINARY_DIR}/symbols)
  file(MAKE_DIRECTORY ${folder})
  set(symbols ${folder}/$<TARGET_FILE_NAME:${target}>.debug)
  # which puts the time of its run into the file's header otherwise
  set(objcopy ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_OBJCOPY})
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${objcopy} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
    COMMAND ${objcopy} --strip-all --add-gnu-debuglink=${symbols} $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()
