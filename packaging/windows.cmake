configure_file(windows/kelvoratool.rc.in ${CMAKE_CURRENT_BINARY_DIR}/kelvoratool.rc @ONLY)
target_sources(KelvoraTool PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/kelvoratool.rc)
install(TARGETS KelvoraTool RUNTIME DESTINATION .)

# The toolkit's libraries and plug-ins go beside the program.
get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
get_filename_component(qt_tools ${qmake} DIRECTORY)
find_program(WINDEPLOYQT windeployqt HINTS ${qt_tools} REQUIRED)
install(CODE "execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND \"${WINDEPLOYQT}\" --no-translations
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/KelvoraTool.exe\")")

set(CPACK_GENERATOR NSIS)
set(CPACK_PACKAGE_INSTALL_DIRECTORY KelvoraTool)
set(CPACK_NSIS_DISPLAY_NAME KelvoraTool)
set(CPACK_NSIS_INSTALLED_ICON_NAME KelvoraTool.exe)
set(CPACK_NSIS_MUI_ICON ${CMAKE_CURRENT_SOURCE_DIR}/icons/kelvoratool.ico)
set(CPACK_NSIS_MUI_UNIICON ${CMAKE_CURRENT_SOURCE_DIR}/icons/kelvoratool.ico)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
