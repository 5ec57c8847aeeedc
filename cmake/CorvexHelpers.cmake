# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later

# corvex_library(NAME DIR... [LINK libs...]): a static library of every source file found in the folders.
# A folder without sources yet gives an interface library, so the tree builds while it grows.
function(corvex_library name)
  cmake_parse_arguments(ARG "" "" "DIRS;LINK;EXCLUDE" ${ARGN})
  set(sources)
  foreach(dir IN LISTS ARG_DIRS)
    file(GLOB found CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
    list(APPEND sources ${found})
  endforeach()
  foreach(ex IN LISTS ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${ex}")
  endforeach()
  set(cpp ${sources})
  list(FILTER cpp INCLUDE REGEX "\\.cpp$")
  if(cpp)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${ARG_DIRS})
    target_link_libraries(${name} PUBLIC ${ARG_LINK})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${ARG_DIRS})
    target_link_libraries(${name} INTERFACE ${ARG_LINK})
  endif()
endfunction()
