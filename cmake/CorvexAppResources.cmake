# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# The application's resources: the welcome window's interface file, compiled into corvex_app_lib, and the
# files of Corvex.app/Contents/Resources: the welcome document and the video device table, made from the
# system's PCI id list.

qt6_wrap_ui(corvex_app_ui_headers ${PROJECT_SOURCE_DIR}/resources/WelcomeWindow.ui)
target_sources(corvex_app_lib PRIVATE ${corvex_app_ui_headers})
target_include_directories(corvex_app_lib PRIVATE ${CMAKE_CURRENT_BINARY_DIR})

set(corvex_resources_dir ${CORVEX_BUNDLE_DIR}/Contents/Resources)
set(corvex_resource_outputs)

# The welcome document: a folder of an HTML page and its pictures, copied whole whenever one of them changes.
file(GLOB corvex_welcome_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/Welcome.rtfd/*)
set(corvex_welcome_stamp ${CMAKE_CURRENT_BINARY_DIR}/Welcome.rtfd.stamp)
add_custom_command(OUTPUT ${corvex_welcome_stamp}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${corvex_resources_dir}/Welcome.rtfd
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_SOURCE_DIR}/resources/Welcome.rtfd
          ${corvex_resources_dir}/Welcome.rtfd
  COMMAND ${CMAKE_COMMAND} -E touch ${corvex_welcome_stamp}
  DEPENDS ${corvex_welcome_files}
  COMMENT "Copying the welcome document into Corvex.app")
list(APPEND corvex_resource_outputs ${corvex_welcome_stamp})

# The video device table (Debian: pci.ids or hwdata). Without the list the table is left out and the
# feedback report names display controllers by their ids.
find_file(CORVEX_PCI_IDS pci.ids PATHS /usr/share/misc /usr/share/hwdata NO_DEFAULT_PATH)
find_package(Python3 COMPONENTS Interpreter)
if(CORVEX_PCI_IDS AND Python3_Interpreter_FOUND)
  set(corvex_video_table ${corvex_resources_dir}/VideoDeviceTranslation.plist)
  add_custom_command(OUTPUT ${corvex_video_table}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${corvex_resources_dir}
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/cmake/VideoDeviceTranslation.py ${CORVEX_PCI_IDS}
            ${corvex_video_table}
    DEPENDS ${PROJECT_SOURCE_DIR}/cmake/VideoDeviceTranslation.py ${CORVEX_PCI_IDS}
    COMMENT "Making the video device table from ${CORVEX_PCI_IDS}")
  list(APPEND corvex_resource_outputs ${corvex_video_table})
else()
  message(WARNING "No pci.ids (install the pci.ids package) or no Python 3: Corvex.app is built without its "
                  "video device table")
endif()

add_custom_target(corvex_app_resources ALL DEPENDS ${corvex_resource_outputs})
# Everything that links the application library (the programs and the tests) finds the resources in place.
add_dependencies(corvex_app_lib corvex_app_resources)
