# SPDX-License-Identifier: MIT
find_package(GTest CONFIG REQUIRED)

# quillon_core_tests(<folder> <file>_test.cpp ...): one GoogleTest executable, and one ctest entry, for each test folder.
# One process for each folder instead of each test keeps the whole run short.
function(quillon_core_tests folder)
    set(name quillon_tests_${folder})
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE quillon_test_support GTest::gtest_main)
    quillon_build_quickly(${name})
    quillon_precompiled_by(${name} quillon_test_support)
    add_test(NAME ${folder} COMMAND ${name})
    quillon_fix_surroundings(${folder})
endfunction()

# quillon_screen_test(<screen>_test.cpp): one Qt Test executable for each screen, run without a display.
function(quillon_screen_test file)
    cmake_path(GET file STEM stem)
    set(name quillon_screen_${stem})
    add_executable(${name} ${file})
    target_link_libraries(${name} PRIVATE quillon_ui quillon_test_support Qt6::Test)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    quillon_build_quickly(${name})
    get_property(first GLOBAL PROPERTY QUILLON_FIRST_SCREEN_TEST)
    if(first)
        quillon_precompiled_by(${name} ${first})
    else()
        quillon_precompile(${name} ${window_headers} <QSignalSpy> <QTest>)
        set_property(GLOBAL PROPERTY QUILLON_FIRST_SCREEN_TEST ${name})
    endif()
    add_test(NAME screen_${stem} COMMAND ${name})
    quillon_fix_surroundings(screen_${stem})
    set_property(TEST screen_${stem} APPEND PROPERTY ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()

# Dates and number forms follow the user's locale and time zone; a test fixes both.
function(quillon_fix_surroundings test)
    set_tests_properties(${test} PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77 ENVIRONMENT "LC_ALL=C;TZ=UTC")
endfunction()

if(QUILLON_GUI)
    find_package(Qt6 COMPONENTS Test REQUIRED)
    # Qt names the folders of each test in definitions of its own. Nothing here asks for them, and a precompiled header is only
    # used where all definitions are the same.
    set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
endif()
