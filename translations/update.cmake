# cmake -D LUPDATE=<program> -D SOURCE_DIR=<folder> -D TEMPLATE=<file> [-D CHECK_IN=<folder>] -P update.cmake
# Brings the template up to date with the sources; with CHECK_IN only tells, by failing, that it is not. Either way a
# warning is an error: it stands for a text that no translator would see.
set(template ${TEMPLATE})
if(CHECK_IN)
    get_filename_component(name ${TEMPLATE} NAME)
    set(template ${CHECK_IN}/${name})
    configure_file(${TEMPLATE} ${template} COPYONLY)
endif()

# Without line numbers, which would change the template with every edit of a source.
execute_process(
    COMMAND ${LUPDATE} -silent -no-obsolete -locations none -source-language en -target-language en
        -extensions cpp,h,ui -I . app discovery forms ftp settings update -ts ${template}
    WORKING_DIRECTORY ${SOURCE_DIR}
    RESULT_VARIABLE result
    OUTPUT_VARIABLE messages
    ERROR_VARIABLE messages)
if(NOT result EQUAL 0 OR messages)
    message(FATAL_ERROR "lupdate: ${messages}")
endif()

if(CHECK_IN)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${TEMPLATE} ${template} RESULT_VARIABLE differs)
    if(differs)
        message(FATAL_ERROR "${TEMPLATE} is not up to date: build the target update-translations")
    endif()
endif()
