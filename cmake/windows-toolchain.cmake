# Debian's cross compiler for 64-bit Windows, and the toolkit that scripts/make-windows built with it.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

get_filename_component(KELVORA_TOOLKIT ${CMAKE_CURRENT_LIST_DIR}/../build/windows/qt ABSOLUTE)
set(triplet x86_64-w64-mingw32)
# The variant whose standard library has threads.
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

set(CMAKE_FIND_ROOT_PATH ${KELVORA_TOOLKIT} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
