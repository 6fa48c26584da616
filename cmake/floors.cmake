# add_floor(NAME LOWER... [ROOMS FOLDER...]): the library NAME from NAME/*.cpp (portable) and, on
# Windows, NAME_win from NAME/*_win.cpp; the same from the floor's rooms, folders inside it. A
# floor's portable library sees only lower portable libraries; its _win library sees its own portable
# one and the lower _win ones.
function(add_floor name)
  cmake_parse_arguments(PARSE_ARGV 1 floor "" "" "ROOMS")
  set(patterns ${CMAKE_SOURCE_DIR}/${name}/*.cpp)
  foreach(room ${floor_ROOMS})
    list(APPEND patterns ${CMAKE_SOURCE_DIR}/${name}/${room}/*.cpp)
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  set(win_sources ${sources})
  list(FILTER win_sources INCLUDE REGEX "_win\\.cpp$")
  list(FILTER sources EXCLUDE REGEX "_win\\.cpp$")
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC demovex_options ${floor_UNPARSED_ARGUMENTS})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE demovex_options ${floor_UNPARSED_ARGUMENTS})
  endif()
  if(WIN32)
    set(lower_win)
    foreach(lower ${floor_UNPARSED_ARGUMENTS})
      list(APPEND lower_win ${lower}_win)
    endforeach()
    if(win_sources)
      # COM interfaces have no virtual destructor; objects behind them end by Release, in final classes
      set_source_files_properties(${win_sources} PROPERTIES COMPILE_OPTIONS -Wno-non-virtual-dtor)
      add_library(${name}_win STATIC ${win_sources})
      target_link_libraries(${name}_win PUBLIC ${name} ${lower_win} ${DEMOVEX_SYSTEM_LIBS})
      # thin code around calls of the system, which cost what they cost
      target_compile_options(${name}_win PRIVATE $<$<CONFIG:Release>:-Os>)
    else()
      add_library(${name}_win INTERFACE)
      target_link_libraries(${name}_win INTERFACE ${name} ${lower_win})
    endif()
  endif()
endfunction()

# Windows' own libraries that the _win libraries use.
if(WIN32)
  # (winmm, winspool and oleacc are not protected from files of the same name beside a program: what
  # is needed of them is loaded late, by platform/system_library_win.h)
  set(DEMOVEX_SYSTEM_LIBS comctl32 comdlg32 gdi32 user32 shell32 ole32 oleaut32 uuid advapi32 shlwapi)
endif()
