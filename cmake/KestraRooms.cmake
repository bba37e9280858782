# What every target of the house is built with, and the two kinds of target that a folder can be.
#
#   kestra_room(NAME MODULE MODULE-NAME SOURCES ... SYSTEM ...)
#       One folder of the library as a static library `kestra_NAME`. MODULE is DORSEL or KESTRA: the shared
#       library that exports the folder's DORSEL_API or KESTRA_API names. SYSTEM names the platform's own
#       libraries. A room never links another one: a shared library must not carry a second copy of the
#       other's state, so the modules and the test programs name all their rooms themselves.
#   kestra_module(NAME MODULE-NAME OUTPUT FILE LINKS ...)
#       A shared library that is a thin final link of all the rooms of a module.
#   kestra_program_settings(TARGET)
#       Language level, warnings and text encoding for a program.
#   kestra_static_program(TARGET)
#       A program (tests, benchmarks, fuzzers) over the static rooms instead of the shared libraries.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(kestra_settings INTERFACE)
target_include_directories(kestra_settings INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(kestra_settings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror
    # The texts of the interface are Windows-1252 (clang knows UTF-8 only; its builds fuzz and lint, they do not ship).
    # -Wrestrict of g++ 12 reports std::string's own assignments (gcc bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-finput-charset=UTF-8 -fexec-charset=CP1252 -Wno-restrict>)
if(WIN32)
    target_compile_definitions(kestra_settings INTERFACE
        WINVER=0x0A00 _WIN32_WINNT=0x0A00 _WIN32_IE=0x0600 WIN32_LEAN_AND_MEAN NOMINMAX STRICT)
    # The programs carry the compiler's run-time inside them: they start without any other DLL than ours.
    target_link_options(kestra_settings INTERFACE -static)
endif()
if(KESTRA_SANITIZE)
    target_compile_options(kestra_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestra_settings INTERFACE -fsanitize=address,undefined)
endif()
if(KESTRA_FUZZ)
    target_compile_options(kestra_settings INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestra_settings INTERFACE -fsanitize=address,undefined)
endif()

function(kestra_program_settings target)
    target_link_libraries(${target} PRIVATE kestra_settings)
endfunction()

function(kestra_static_program target)
    get_property(rooms GLOBAL PROPERTY KESTRA_ALL_ROOMS)
    list(JOIN rooms "," group)
    target_link_libraries(${target} PRIVATE kestra_settings "$<LINK_GROUP:RESCAN,${group}>")
endfunction()

function(kestra_room name)
    cmake_parse_arguments(ROOM "" "MODULE" "SOURCES;SYSTEM" ${ARGN})
    add_library(kestra_${name} STATIC ${ROOM_SOURCES})
    target_link_libraries(kestra_${name} PUBLIC kestra_settings ${ROOM_SYSTEM})
    target_compile_definitions(kestra_${name} PRIVATE ${ROOM_MODULE}_BUILD)
    set_property(GLOBAL APPEND PROPERTY KESTRA_ALL_ROOMS kestra_${name})
    set_property(GLOBAL APPEND PROPERTY ${ROOM_MODULE}_ROOMS kestra_${name})
endfunction()

function(kestra_module name module)
    cmake_parse_arguments(MODULE "" "OUTPUT" "LINKS" ${ARGN})
    add_library(${name} SHARED ${CMAKE_SOURCE_DIR}/cmake/module.cpp)
    get_property(rooms GLOBAL PROPERTY ${module}_ROOMS)
    foreach(room IN LISTS rooms)
        target_link_libraries(${name} PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,${room}>")
    endforeach()
    target_link_libraries(${name} PUBLIC ${MODULE_LINKS})
    target_include_directories(${name} INTERFACE $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}> $<INSTALL_INTERFACE:include>)
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${MODULE_OUTPUT} LINKER_LANGUAGE CXX
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
    if(WIN32)
        set_target_properties(${name} PROPERTIES PREFIX "")
    endif()
endfunction()
