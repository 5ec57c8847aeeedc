# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later

# corvex_layer(NAME FOLDER folder [EXCLUDE regex...] [LINK libs...]): a static library of the sources in
# src/<folder>. Its headers are reached as "<folder>/Name.h" through an include root that holds only this folder,
# so a library sees the headers of the layers it links and no others: an include that runs upwards does not build.
function(corvex_layer name)
  cmake_parse_arguments(ARG "" "FOLDER" "LINK;EXCLUDE" ${ARGN})
  set(dir ${PROJECT_SOURCE_DIR}/src/${ARG_FOLDER})
  file(GLOB sources CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
  foreach(ex IN LISTS ARG_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${ex}")
  endforeach()
  set(root ${CMAKE_BINARY_DIR}/include/${ARG_FOLDER})
  file(MAKE_DIRECTORY ${root})
  if(NOT EXISTS ${root}/${ARG_FOLDER})
    file(CREATE_LINK ${dir} ${root}/${ARG_FOLDER} SYMBOLIC)
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
  # The common Qt and standard headers, precompiled once per library.
  target_precompile_headers(${name} PRIVATE <QByteArray> <QDateTime> <QDir> <QFileInfo> <QHash> <QList> <QObject>
                            <QString> <QStringList> <QVariant> <memory> <functional> <vector>)
endfunction()
