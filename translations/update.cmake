# cmake -D LUPDATE=<program> -D SOURCE_DIR=<folder> -D FILES=<file,...> [-D CHECK_IN=<folder>] -P update.cmake
# Brings the files for translators up to date with the sources; with CHECK_IN only tells, by failing, that one is not.
# Either way a warning is an error: it stands for a text that no translator would see.
string(REPLACE "," ";" FILES ${FILES})
set(files ${FILES})
if(CHECK_IN)
    file(COPY ${FILES} DESTINATION ${CHECK_IN})
    list(TRANSFORM files REPLACE ".*/" ${CHECK_IN}/)
endif()

# Without line numbers, which would change the files with every edit of a source.
execute_process(
    COMMAND ${LUPDATE} -silent -no-obsolete -locations none -source-language en
        -extensions cpp,h,ui -I . app discovery forms ftp settings translations update -ts ${files}
    WORKING_DIRECTORY ${SOURCE_DIR}
    RESULT_VARIABLE result
    OUTPUT_VARIABLE messages
    ERROR_VARIABLE messages)
if(NOT result EQUAL 0 OR messages)
    message(FATAL_ERROR "lupdate: ${messages}")
endif()

if(CHECK_IN)
    foreach(file updated IN ZIP_LISTS FILES files)
        execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${file} ${updated} RESULT_VARIABLE differs)
        if(differs)
            message(FATAL_ERROR "${file} is not up to date: build the target update-translations")
        endif()
    endforeach()
endif()
