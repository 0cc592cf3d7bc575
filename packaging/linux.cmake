include(GNUInstallDirs)
# Debian wants the package's name there, not the project's.
set(docdir ${CMAKE_INSTALL_DATAROOTDIR}/doc/kelvoratool)

set(app_id example.kelvora.KelvoraTool)
set(metainfo ${CMAKE_CURRENT_BINARY_DIR}/${app_id}.metainfo.xml)
configure_file(linux/${app_id}.metainfo.xml.in ${metainfo} @ONLY)

install(TARGETS KelvoraTool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES linux/${app_id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

set(hicolor ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES icons/kelvoratool.svg DESTINATION ${hicolor}/scalable/apps)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
    install(FILES icons/kelvoratool-${size}.png DESTINATION ${hicolor}/${size}x${size}/apps RENAME kelvoratool.png)
endforeach()

# kelvora_install_gzipped(<text> <destination> <name>): installs the text as <name>.gz, without a time stamp in it.
find_program(GZIP_PROGRAM gzip REQUIRED)
function(kelvora_install_gzipped text destination name)
    set(archive ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
    add_custom_command(OUTPUT ${archive} DEPENDS ${text} VERBATIM
        COMMAND ${GZIP_PROGRAM} -9nc ${text} > ${archive})
    add_custom_target(gzip-${name} ALL DEPENDS ${archive})
    install(FILES ${archive} DESTINATION ${destination})
endfunction()

foreach(text IN ITEMS linux/KelvoraTool.1 debian/changelog)
    configure_file(${text}.in ${CMAKE_CURRENT_BINARY_DIR}/${text} @ONLY)
endforeach()
kelvora_install_gzipped(${CMAKE_CURRENT_BINARY_DIR}/linux/KelvoraTool.1 ${CMAKE_INSTALL_MANDIR}/man1 KelvoraTool.1)
kelvora_install_gzipped(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${docdir} changelog)
kelvora_install_gzipped(${CMAKE_CURRENT_BINARY_DIR}/debian/changelog ${docdir} changelog.Debian)
install(FILES debian/copyright DESTINATION ${docdir})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KELVORA_DEB_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Opens the N6's web interface.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Finds the displays, the N6 and the gyro of a Kelvora boat instrument
system in the boat's network and tells whether they can be reached. Updates
their firmware, sets the modes of the N6's serial ports, and backs up,
restores and resets the settings of the system.")

# kelvora_validate(<test> <program> <arguments...>): a test that shows as skipped where the program is not installed.
function(kelvora_validate test program)
    find_program(KELVORA_${program} ${program})
    if(KELVORA_${program})
        add_test(NAME ${test} COMMAND ${KELVORA_${program}} ${ARGN})
    else()
        add_test(NAME ${test} COMMAND ${CMAKE_COMMAND} -E echo "SKIP: ${program} is missing")
        set_tests_properties(${test} PROPERTIES SKIP_REGULAR_EXPRESSION ^SKIP)
    endif()
endfunction()

if(KELVORA_BUILD_TESTS)
    kelvora_validate(desktop_entry desktop-file-validate ${CMAKE_CURRENT_SOURCE_DIR}/linux/${app_id}.desktop)
    kelvora_validate(metainfo appstreamcli validate --no-net ${metainfo})
endif()
