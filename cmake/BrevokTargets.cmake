# How every target of the project is built.

set(CMAKE_AUTOMOC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Programs like libraries, since both take the one precompiled header: newer compilers refuse it under -fPIE.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
# What waits in the tray all day is to be small, and pages that are not there need not be loaded at the start.
set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG -ffunction-sections -fdata-sections")
set(BREVOK_SMALL_LINK "")
include(CheckLinkerFlag)
foreach(option -Wl,--gc-sections -Wl,-z,pack-relative-relocs)
    string(MAKE_C_IDENTIFIER "BREVOK_LINKS_WITH${option}" links)
    check_linker_flag(CXX ${option} ${links})
    if(${links})
        list(APPEND BREVOK_SMALL_LINK $<$<CONFIG:Release>:${option}>)
    endif()
endforeach()
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(brevok_options INTERFACE)
target_compile_features(brevok_options INTERFACE cxx_std_20)
target_compile_options(brevok_options INTERFACE
    -Wall -Wextra -Wshadow -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor
    $<$<BOOL:${BREVOK_WARNINGS_AS_ERRORS}>:-Werror> -fvisibility=hidden)
target_compile_definitions(brevok_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(BREVOK_SANITIZE)
    # Not optimized and with line numbers only: it builds in half the time, and the tests mostly wait for processes.
    # Fuzzers do not wait.
    target_compile_options(brevok_options INTERFACE
        -fsanitize=${BREVOK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1
        $<IF:$<BOOL:${BREVOK_FUZZERS}>,-O1,-O0>)
    target_link_options(brevok_options INTERFACE -fsanitize=${BREVOK_SANITIZE})
endif()

# One precompiled header of the library headers that nearly every file reads, built once for all targets. It holds
# nothing of ours, so it hides no missing include of a room.
if(NOT EXISTS ${CMAKE_BINARY_DIR}/precompiled.cpp) # a new one would be newer than all that was built
    file(WRITE ${CMAKE_BINARY_DIR}/precompiled.cpp "")
endif()
function(brevok_precompile name)
    add_library(${name} STATIC ${CMAKE_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(${name} PRIVATE brevok_options Qt6::Core)
    target_compile_options(${name} PRIVATE ${ARGN})
    target_precompile_headers(${name} PRIVATE <QtCore/QtCore> <functional> <memory> <optional> <utility>)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
endfunction()
brevok_precompile(brevok_precompiled)
# Rooms that go through whole catalogues are built for speed; their code takes the header under the same option alone.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    brevok_precompile(brevok_precompiled_fast -O2)
endif()

# brevok_common(TARGET [FAST])
function(brevok_common target)
    target_link_libraries(${target} PRIVATE brevok_options)
    # The macros with which tests wait narrow what they are given, from Qt 6.8 on.
    if(Qt6_VERSION VERSION_LESS 6.8 OR NOT target MATCHES "^test_")
        target_compile_options(${target} PRIVATE -Wconversion)
    endif()
    if("FAST" IN_LIST ARGN AND TARGET brevok_precompiled_fast)
        target_compile_options(${target} PRIVATE -O2)
        target_precompile_headers(${target} REUSE_FROM brevok_precompiled_fast)
    else()
        target_precompile_headers(${target} REUSE_FROM brevok_precompiled)
    endif()
endfunction()

# brevok_room(NAME [FAST] SOURCES file... [USES room...] [LINKS library...] [PRIVATE_LINKS library...])
# A room is one folder under src/ and one static library: ui/panel is src/ui/panel and brevok_ui_panel. Its headers are
# included as "room/Header.h" and are reachable only through a link to the room, since each room has an include root of
# its own.
function(brevok_room name)
    cmake_parse_arguments(ROOM "FAST" "" "SOURCES;USES;LINKS;PRIVATE_LINKS" ${ARGN})
    string(REPLACE / _ library ${name})
    set(include_link ${CMAKE_BINARY_DIR}/include/${library}/${name})
    cmake_path(GET include_link PARENT_PATH include_folder)
    file(MAKE_DIRECTORY ${include_folder})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${name} ${include_link} SYMBOLIC)
    add_library(brevok_${library} STATIC ${ROOM_SOURCES})
    target_include_directories(brevok_${library} PUBLIC ${CMAKE_BINARY_DIR}/include/${library})
    # What the tools generate lies outside every folder called src, so that no check takes it for our own.
    set_property(TARGET brevok_${library} PROPERTY AUTOGEN_BUILD_DIR ${CMAKE_BINARY_DIR}/generated/${name})
    list(TRANSFORM ROOM_USES REPLACE / _)
    list(TRANSFORM ROOM_USES PREPEND brevok_)
    target_link_libraries(brevok_${library} PUBLIC ${ROOM_USES} ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE_LINKS})
    if(ROOM_FAST)
        brevok_common(brevok_${library} FAST)
    else()
        brevok_common(brevok_${library})
    endif()
endfunction()

# brevok_program(NAME SOURCES file... LINKS library...)
function(brevok_program name)
    cmake_parse_arguments(PROGRAM "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${PROGRAM_SOURCES})
    target_link_libraries(${name} PRIVATE ${PROGRAM_LINKS})
    target_link_options(${name} PRIVATE ${BREVOK_SMALL_LINK})
    brevok_common(${name})
endfunction()

# brevok_module(NAME SOURCES file... LINKS library...)
# What a launcher loads at run time: build/<preset>/lib/tolvane-brevok/NAME.so
function(brevok_module name)
    cmake_parse_arguments(MODULE "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} MODULE ${MODULE_SOURCES})
    target_link_libraries(${name} PRIVATE ${MODULE_LINKS})
    set_target_properties(${name} PROPERTIES
        PREFIX "" SUFFIX ".so" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib/tolvane-brevok)
    target_link_options(${name} PRIVATE -Wl,--as-needed ${BREVOK_SMALL_LINK})
    if(NOT BREVOK_SANITIZE) # a sanitizer's own functions come with the launcher
        target_link_options(${name} PRIVATE -Wl,-z,defs)
    endif()
    brevok_common(${name})
endfunction()

add_custom_target(threaded_tests)

# brevok_test(NAME SOURCES file... LINKS library... [THREADED] [LABELS label...])
# A Qt Test program, run by ctest under a private session bus; THREADED ones, which the target threaded_tests builds,
# also run under ThreadSanitizer.
function(brevok_test name)
    cmake_parse_arguments(TEST "THREADED" "" "SOURCES;LINKS;LABELS" ${ARGN})
    add_executable(test_${name} ${TEST_SOURCES})
    target_link_libraries(test_${name} PRIVATE ${TEST_LINKS} brevok_test_support Qt6::Test)
    brevok_common(test_${name})
    set_target_properties(test_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/run-isolated $<TARGET_FILE:test_${name}>)
    if(TEST_THREADED)
        list(APPEND TEST_LABELS threaded)
        add_dependencies(threaded_tests test_${name})
    endif()
    # A function that hangs is ended and named before the test as a whole is. What the macros wait for in vain takes
    # three times what they are given.
    set(milliseconds 150000)
    if(BREVOK_SANITIZE)
        set(milliseconds 250000)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300 ENVIRONMENT QTEST_FUNCTION_TIMEOUT=${milliseconds} LABELS "${TEST_LABELS}")
endfunction()
