# Made on Debian with the preset "windows"; scripts/make-windows does all of it.

set(resources ${CMAKE_CURRENT_BINARY_DIR}/kelvoratool.rc)
configure_file(windows/kelvoratool.rc.in ${resources} @ONLY)
target_sources(KelvoraTool PRIVATE ${resources})
set_source_files_properties(${resources} TARGET_DIRECTORY KelvoraTool PROPERTIES
    OBJECT_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/windows/kelvoratool.manifest)

install(TARGETS KelvoraTool RUNTIME DESTINATION .)
install(FILES windows/qt.conf DESTINATION .)
foreach(module IN ITEMS Core Gui Network Widgets)
    list(APPEND toolkit $<TARGET_FILE:Qt5::${module}>)
endforeach()
set(plugins $<TARGET_FILE:Qt5::QWindowsIntegrationPlugin> $<TARGET_FILE:Qt5::QWindowsVistaStylePlugin>)
install(FILES ${toolkit} DESTINATION .)
install(FILES $<TARGET_FILE:Qt5::QWindowsIntegrationPlugin> DESTINATION plugins/platforms)
install(FILES $<TARGET_FILE:Qt5::QWindowsVistaStylePlugin> DESTINATION plugins/styles)

# The libraries that these load: the compiler's, zlib. What is found nowhere is part of Windows. CMake looks for names in
# lower case, which the toolkit's are not.
foreach(library IN ITEMS libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(folder ${path} DIRECTORY)
    list(APPEND library_folders ${folder})
endforeach()
install(CODE "
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_TOOL objdump)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_COMMAND \"${CMAKE_OBJDUMP}\")
    file(GET_RUNTIME_DEPENDENCIES EXECUTABLES \"$<TARGET_FILE:KelvoraTool>\" LIBRARIES ${toolkit} ${plugins}
        DIRECTORIES ${library_folders}
        RESOLVED_DEPENDENCIES_VAR libraries UNRESOLVED_DEPENDENCIES_VAR part_of_windows)
    foreach(library IN LISTS libraries)
        file(INSTALL \${library} DESTINATION \"\${CMAKE_INSTALL_PREFIX}\")
        get_filename_component(name \${library} NAME)
        execute_process(COMMAND_ERROR_IS_FATAL ANY
            COMMAND \"${CMAKE_STRIP}\" \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${name}\")
    endforeach()")

# The licences of these, and where their sources are found.
set(debian_packages gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev libz-mingw-w64)
execute_process(COMMAND dpkg-query --show --showformat=\${source:Package}\ \${source:Version}\n ${debian_packages}
    OUTPUT_VARIABLE library_sources COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${KELVORA_TOOLKIT}/source-package toolkit_source)
configure_file(windows/licences.txt.in ${CMAKE_CURRENT_BINARY_DIR}/licences.txt @ONLY NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/licences.txt DESTINATION .)
install(FILES ${KELVORA_TOOLKIT}/copyright DESTINATION licences RENAME toolkit.txt)
foreach(package IN LISTS debian_packages)
    install(FILES /usr/share/doc/${package}/copyright DESTINATION licences RENAME ${package}.txt)
endforeach()
foreach(licence IN ITEMS LGPL-2.1 LGPL-3 GPL-2 GPL-3)
    install(FILES /usr/share/common-licenses/${licence} DESTINATION licences RENAME ${licence}.txt)
endforeach()

set(CPACK_GENERATOR NSIS ZIP)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/windows/cpack.cmake)
set(CPACK_PACKAGE_FILE_NAME KelvoraTool-${PROJECT_VERSION}-setup)
# Also the key under which Windows lists the program.
set(CPACK_PACKAGE_INSTALL_DIRECTORY KelvoraTool)
# 64 bit like the program: on older Windows it says at once that it cannot be used there.
set(CPACK_NSIS_EXECUTABLE_PRE_ARGUMENTS "-V2 \"-XTarget amd64-unicode\"")
set(CPACK_NSIS_INSTALL_ROOT $PROGRAMFILES64)
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_NSIS_COMPRESSOR "/SOLID lzma")
set(CPACK_NSIS_MANIFEST_DPI_AWARE ON)
set(CPACK_NSIS_IGNORE_LICENSE_PAGE ON)
set(CPACK_NSIS_DISPLAY_NAME KelvoraTool)
set(CPACK_NSIS_INSTALLED_ICON_NAME KelvoraTool.exe)
set(CPACK_NSIS_MUI_ICON ${CMAKE_CURRENT_SOURCE_DIR}/icons/kelvoratool.ico)
set(CPACK_NSIS_MUI_UNIICON ${CMAKE_CURRENT_SOURCE_DIR}/icons/kelvoratool.ico)
set(CPACK_NSIS_URL_INFO_ABOUT https://kelvora.example)
set(CPACK_NSIS_CONTACT maintainers@kelvora.example)
configure_file(windows/installer.nsh.in ${CMAKE_CURRENT_BINARY_DIR}/installer.nsh @ONLY)
set(CPACK_NSIS_DEFINES "!include \"${CMAKE_CURRENT_BINARY_DIR}/installer.nsh\"")
set(CPACK_NSIS_EXTRA_PREINSTALL_COMMANDS "!insertmacro BeforeInstall")
set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS "!insertmacro AfterInstall")
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS "!insertmacro BeforeUninstall")
# Run after the program's own key has gone.
set(CPACK_NSIS_DELETE_ICONS_EXTRA "!insertmacro AfterUninstall")
