# Written with care but never run: nobody has built the disk image or opened it on macOS yet.

set(icon ${CMAKE_CURRENT_SOURCE_DIR}/icons/kelvoratool.icns)
target_sources(KelvoraTool PRIVATE ${icon})
set_source_files_properties(${icon} TARGET_DIRECTORY KelvoraTool PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(KelvoraTool PROPERTIES
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_SOURCE_DIR}/macos/Info.plist.in)
install(TARGETS KelvoraTool BUNDLE DESTINATION .)

# The toolkit's frameworks and plug-ins go into the bundle.
get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
get_filename_component(qt_tools ${qmake} DIRECTORY)
find_program(MACDEPLOYQT macdeployqt HINTS ${qt_tools} REQUIRED)
install(CODE "execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND \"${MACDEPLOYQT}\"
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/KelvoraTool.app\")")

set(CPACK_GENERATOR DragNDrop)
