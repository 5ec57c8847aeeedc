# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later

# What the bundle carries besides its programs, and how Corvex is installed and packaged.
#
# The bundle's Contents/Resources holds the application icon (SVG and PNG sizes rendered here), the symbolic
# tray icon, the translations, and the desktop integration files (launcher templates, AppStream metainfo, man
# page, bash completion) that scripts/install.sh and the move into an Applications folder install from it.
#
# Install components: Bundle (the bundle in CORVEX_APPLICATIONS_DIR), Desktop (launcher, agent entry, icons,
# metainfo, man page, completion under the data directory) and CLI (`corvex` linked into the bin directory).

include(GNUInstallDirs)

set(CORVEX_APPLICATIONS_DIR "/opt/Applications" CACHE PATH "Folder the installed Corvex.app lives in")
set(CORVEX_ICON_SIZES 16 22 24 32 48 64 128 256 512)
set(corvex_resources_dir ${CORVEX_BUNDLE_DIR}/Contents/Resources)
set(corvex_resource_src ${PROJECT_SOURCE_DIR}/resources)

find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert (Debian package librsvg2-bin) renders Corvex's icons: run scripts/install-deps.sh")
endif()

# The application icon in every size, the scalable one and the symbolic one, laid out as the hicolor theme.
set(corvex_icon_outputs)
set(app_svg ${corvex_resource_src}/icons/com.ostrel.Corvex.svg)
set(symbolic_svg ${corvex_resource_src}/icons/com.ostrel.Corvex-symbolic.svg)
set(icon_root ${corvex_resources_dir}/icons/hicolor)
foreach(size IN LISTS CORVEX_ICON_SIZES)
  set(png ${icon_root}/${size}x${size}/apps/com.ostrel.Corvex.png)
  add_custom_command(OUTPUT ${png}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${icon_root}/${size}x${size}/apps
    COMMAND ${RSVG_CONVERT} --width=${size} --height=${size} --format=png --output=${png} ${app_svg}
    DEPENDS ${app_svg} COMMENT "Rendering the ${size}x${size} icon" VERBATIM)
  list(APPEND corvex_icon_outputs ${png})
endforeach()
foreach(pair "scalable/apps/com.ostrel.Corvex.svg|${app_svg}"
             "symbolic/apps/com.ostrel.Corvex-symbolic.svg|${symbolic_svg}")
  string(REPLACE "|" ";" pair "${pair}")
  list(GET pair 0 relative)
  list(GET pair 1 source)
  add_custom_command(OUTPUT ${icon_root}/${relative}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${source} ${icon_root}/${relative}
    DEPENDS ${source} VERBATIM)
  list(APPEND corvex_icon_outputs ${icon_root}/${relative})
endforeach()

# The desktop integration files, copied into the bundle as they stand.
set(corvex_integration_files
  desktop/com.ostrel.Corvex.desktop.in desktop/com.ostrel.CorvexAgent.desktop.in
  desktop/com.ostrel.Corvex.metainfo.xml man/corvex.1 completion/corvex)
set(corvex_integration_outputs)
foreach(file IN LISTS corvex_integration_files)
  add_custom_command(OUTPUT ${corvex_resources_dir}/${file}
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${corvex_resource_src}/${file} ${corvex_resources_dir}/${file}
    DEPENDS ${corvex_resource_src}/${file} VERBATIM)
  list(APPEND corvex_integration_outputs ${corvex_resources_dir}/${file})
endforeach()
add_custom_target(corvex_bundle_resources ALL DEPENDS ${corvex_icon_outputs} ${corvex_integration_outputs})
add_dependencies(Corvex corvex_bundle_resources)

# Translations: one .qm per language in the bundle's Resources/translations, loaded for the user's language.
find_package(Qt6 6.4 COMPONENTS LinguistTools)
if(Qt6LinguistTools_FOUND)
  file(GLOB corvex_ts_files CONFIGURE_DEPENDS ${corvex_resource_src}/translations/*.ts)
  file(GLOB_RECURSE corvex_translatable CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp ${PROJECT_SOURCE_DIR}/src/*.h
       ${PROJECT_SOURCE_DIR}/resources/*.ui)
  set_source_files_properties(${corvex_ts_files} PROPERTIES OUTPUT_LOCATION ${corvex_resources_dir}/translations)
  qt_add_translations(Corvex TS_FILES ${corvex_ts_files} SOURCES ${corvex_translatable}
    LUPDATE_OPTIONS -no-obsolete -locations none QM_FILES_OUTPUT_VARIABLE corvex_qm_files)
  add_custom_target(corvex_translations ALL DEPENDS ${corvex_qm_files})
  add_dependencies(Corvex corvex_translations)
else()
  message(FATAL_ERROR "Qt Linguist tools (Debian package qt6-tools-dev) build the translations: "
                      "run scripts/install-deps.sh")
endif()

# Bundle: the whole Corvex.app with `corvex` beside the agent.
install(DIRECTORY ${CORVEX_BUNDLE_DIR} DESTINATION ${CORVEX_APPLICATIONS_DIR} COMPONENT Bundle
        USE_SOURCE_PERMISSIONS)
install(PROGRAMS $<TARGET_FILE:corvex> DESTINATION ${CORVEX_APPLICATIONS_DIR}/Corvex.app/Contents/Helpers
        COMPONENT Bundle)
# A stripping install (`cmake --install --strip`, the package) strips the programs and plugins of the bundle too,
# which the folder copy above does not.
install(CODE "
  if(CMAKE_INSTALL_DO_STRIP)
    file(GLOB_RECURSE corvex_binaries \"\$ENV{DESTDIR}${CORVEX_APPLICATIONS_DIR}/Corvex.app/Contents/*.so\"
         \"\$ENV{DESTDIR}${CORVEX_APPLICATIONS_DIR}/Corvex.app/Contents/MacOS/*\"
         \"\$ENV{DESTDIR}${CORVEX_APPLICATIONS_DIR}/Corvex.app/Contents/Helpers/*/Contents/MacOS/*\"
         \"\$ENV{DESTDIR}${CORVEX_APPLICATIONS_DIR}/Corvex.app/Contents/Helpers/corvex\")
    foreach(binary IN LISTS corvex_binaries)
      execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-unneeded \"\${binary}\" RESULT_VARIABLE stripped)
      if(NOT stripped EQUAL 0)
        message(FATAL_ERROR \"could not strip \${binary}\")
      endif()
    endforeach()
  endif()" COMPONENT Bundle)

# Desktop: the launcher and the agent's entry pointing into the installed bundle, icons, metainfo, man page,
# completion.
set(CORVEX_BUNDLE_PATH ${CORVEX_APPLICATIONS_DIR}/Corvex.app)
foreach(entry com.ostrel.Corvex com.ostrel.CorvexAgent)
  configure_file(${corvex_resource_src}/desktop/${entry}.desktop.in ${CMAKE_BINARY_DIR}/install/${entry}.desktop @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/install/${entry}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
          COMPONENT Desktop)
endforeach()
install(DIRECTORY ${icon_root} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons COMPONENT Desktop)
install(FILES ${corvex_resource_src}/desktop/com.ostrel.Corvex.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT Desktop)
install(FILES ${corvex_resource_src}/man/corvex.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Desktop)
install(FILES ${corvex_resource_src}/completion/corvex
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Desktop)

# CLI: `corvex` on the PATH, a link into the bundle.
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/install)
file(CREATE_LINK ${CORVEX_BUNDLE_PATH}/Contents/Helpers/corvex ${CMAKE_BINARY_DIR}/install/corvex SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/install/corvex DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT CLI)

# The release archive Corvex-<version>-<arch>.tar.xz: Corvex.app alone, as a user downloads it.
set(CORVEX_ARCHIVE_ARCH ${CMAKE_SYSTEM_PROCESSOR})
set(CORVEX_RELEASE_ARCHIVE ${CMAKE_BINARY_DIR}/Corvex-${CORVEX_MARKETING_VERSION}-${CORVEX_ARCHIVE_ARCH}.tar.xz)
set(archive_stage ${CMAKE_BINARY_DIR}/release-stage)
add_custom_target(release_archive
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${archive_stage}
  COMMAND ${CMAKE_COMMAND} -E env DESTDIR=${archive_stage}
          ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --component Bundle
  COMMAND ${CMAKE_COMMAND} -E chdir ${archive_stage}${CORVEX_APPLICATIONS_DIR}
          ${CMAKE_COMMAND} -E tar cJf ${CORVEX_RELEASE_ARCHIVE} Corvex.app
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${archive_stage}
  DEPENDS Corvex CorvexAgent corvex corvex_commands corvex_pdf corvex_bundle_resources corvex_translations
  COMMENT "Packing ${CORVEX_RELEASE_ARCHIVE}" VERBATIM)

include(cmake/Packaging.cmake)
