# cmake -D PROGRAM=<file> -D LIST=<file> -P ListTests.cmake
# Asks a Qt Test program for its functions and rows, and writes a file with one line for each, for CTest.
set(ENV{QT_QPA_PLATFORM} offscreen)
# What the toolkit leaks meanwhile is no reason to fail.
set(ENV{ASAN_OPTIONS} detect_leaks=0)
execute_process(COMMAND ${PROGRAM} -datatags OUTPUT_VARIABLE found ERROR_VARIABLE said RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT found)
    message(FATAL_ERROR "${PROGRAM} cannot list its tests: ${said}")
endif()

set(tests "")
string(REGEX MATCHALL "[^\n]+" lines "${found}")
foreach(line IN LISTS lines)
    # The class, the function, and the row if it has one.
    if(NOT line MATCHES "^[^ ]+ ([^ ]+)( (.*))?$")
        message(FATAL_ERROR "${PROGRAM}: not a test: ${line}")
    endif()
    set(test ${CMAKE_MATCH_1})
    if(CMAKE_MATCH_2)
        string(APPEND test ":${CMAKE_MATCH_3}")
    endif()
    string(APPEND tests "kelvora_test_found([==[${test}]==])\n")
endforeach()
file(WRITE ${LIST} "${tests}")
