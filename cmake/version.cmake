# The project's version in the forms that sources, resources and manifests need.
#
# DEMOVEX_VERSION (1.1) for people, DEMOVEX_VERSION_FOUR (1.1.0.0) for manifests, and the header
# demovex_version.h in DEMOVEX_VERSION_DIR for resources. C++ sources get DEMOVEX_VERSION as a
# definition of their own, so that a new version compiles only them anew.
set(DEMOVEX_VERSION ${PROJECT_VERSION})
string(REPLACE "." ";" version_parts ${PROJECT_VERSION})
list(APPEND version_parts 0 0 0)
list(SUBLIST version_parts 0 4 version_parts)
list(JOIN version_parts . DEMOVEX_VERSION_FOUR)
list(JOIN version_parts , DEMOVEX_VERSION_COMMAS)
set(DEMOVEX_VERSION_DIR ${CMAKE_BINARY_DIR}/version)
file(CONFIGURE OUTPUT ${DEMOVEX_VERSION_DIR}/demovex_version.h CONTENT
"#define DEMOVEX_VERSION \"@DEMOVEX_VERSION@\"
#define DEMOVEX_VERSION_FOUR \"@DEMOVEX_VERSION_FOUR@\"
#define DEMOVEX_VERSION_COMMAS @DEMOVEX_VERSION_COMMAS@
" @ONLY)

# versioned(SOURCES...): sources (of the folder that calls it) that say the version
function(versioned)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_DEFINITIONS
    "DEMOVEX_VERSION=\"${DEMOVEX_VERSION}\";DEMOVEX_LIBRARY_VERSION=\"${DEMOVEX_LIBRARY_VERSION}\"")
endfunction()
versioned(dialogs/about_text.cpp client/registration.cpp)

# What manifests call the processor.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(DEMOVEX_ARCHITECTURE amd64)
else()
  set(DEMOVEX_ARCHITECTURE x86)
endif()
