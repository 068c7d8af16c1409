# What every room's target has in common.

# jostle_room(<target> <alias>): names the room Jostle::<alias>, lets it and its users include "room/file.h" from the
# repository root, and gives its own sources the project's flags.
function(jostle_room target alias)
    add_library(Jostle::${alias} ALIAS ${target})
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${target} PRIVATE jostle_flags)
endfunction()

# jostle_add_tests(<room> SOURCES <file>... LIBRARIES <target>...): one binary test_<room>; ctest runs each of its
# cases by itself, as <room>.<suite>.<case>. The tests' files are in JOSTLE_TEST_DATA.
function(jostle_add_tests room)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(test_${room} ${arg_SOURCES})
    target_include_directories(test_${room} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_compile_definitions(test_${room} PRIVATE JOSTLE_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    target_link_libraries(test_${room} PRIVATE jostle_flags ${arg_LIBRARIES} GTest::gtest_main)
    gtest_discover_tests(test_${room} TEST_PREFIX "${room}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300)
endfunction()
