# How every target of this project is compiled.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTORCC ON)

# Our FTP classes carry the toolkit's prefix Q: nothing of ours may be visible to a dynamic linker that could
# mistake one for the other.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(KELVORA_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize (empty: none)")
if(KELVORA_SANITIZE)
    add_compile_options(-fsanitize=${KELVORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${KELVORA_SANITIZE})
endif()

# Carries the include root, the warnings and the toolkit's strict modes; every own target links it.
add_library(kelvora_options INTERFACE)
target_include_directories(kelvora_options INTERFACE ${PROJECT_SOURCE_DIR})

function(kelvora_strict target)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DEPRECATED_WARNINGS)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 $<$<BOOL:${KELVORA_WARNINGS_AS_ERRORS}>:/WX>)
    else()
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
            $<$<BOOL:${KELVORA_WARNINGS_AS_ERRORS}>:-Werror>)
    endif()
endfunction()

# kelvora_library(<subsystem> SOURCES <files...> LINKS <targets...>): the static library kelvora_<subsystem>.
function(kelvora_library subsystem)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(kelvora_${subsystem} STATIC ${ARG_SOURCES})
    set_target_properties(kelvora_${subsystem} PROPERTIES AUTOUIC_SEARCH_PATHS ${PROJECT_SOURCE_DIR}/forms)
    target_link_libraries(kelvora_${subsystem} PUBLIC kelvora_options ${ARG_LINKS})
    kelvora_strict(kelvora_${subsystem})
endfunction()
