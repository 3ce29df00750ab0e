# How libraries and tests are compiled: headers that are dear to read are read once a target, and the sources of a folder
# are compiled in groups. Both together halve the time of a build from nothing. Sources that need other flags, or names of
# their own that others have too, stand apart.
option(VELDRAN_GROUPED "Precompile headers and compile sources in groups; off, every source shows that it includes what it uses" ON)

set(VELDRAN_CORE_HEADERS <algorithm> <array> <charconv> <cmath> <cstdint> <cstdio> <cstdlib> <cstring> <filesystem> <functional>
                         <limits> <map> <memory> <optional> <span> <string> <string_view> <utility> <vector>)
set(VELDRAN_SHELL_HEADERS ${VELDRAN_CORE_HEADERS} <windows.h> <commctrl.h>)

# Sets both variables to the sources below the current folder: core, and what lies in the rooms' folders `windows`. The
# folder `windows` of the current one has the programs' own sources, which are named where they are used.
function(veldran_sources core_variable shell_variable)
  file(GLOB_RECURSE core RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS *.cpp)
  set(shell ${core})
  list(FILTER core EXCLUDE REGEX "(^|/)windows/")
  list(FILTER shell INCLUDE REGEX "/windows/|^windows/.*/")
  set(${core_variable} ${core} PARENT_SCOPE)
  set(${shell_variable} ${shell} PARENT_SCOPE)
endfunction()

# Precompiles the headers for the target, or uses those of `REUSE_FROM OTHER`.
function(veldran_precompile target)
  if(VELDRAN_GROUPED)
    if(ARGV1 STREQUAL "REUSE_FROM")
      target_precompile_headers(${target} ${ARGN})
    else()
      target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
  endif()
endfunction()

# Compiles the target's sources in groups of about `size`, each of one room; apart from the named ones.
function(veldran_group target size)
  if(NOT VELDRAN_GROUPED)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(REMOVE_ITEM sources ${ARGN})
  foreach(source IN LISTS sources)
    if(IS_ABSOLUTE ${source})
      set(room tests)
    else()
      string(REGEX REPLACE "/.*" "" room ${source})
    endif()
    math(EXPR number "0${in_${room}} / ${size}")
    math(EXPR in_${room} "0${in_${room}} + 1")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${room}_${number})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
