# kelo_test_part(<name> <source>... [LIBRARIES <library>...])
#
# What several tests share, compiled once.
function(kelo_test_part name)
    cmake_parse_arguments(PARSE_ARGV 1 PART "" "" "LIBRARIES")
    qt_add_library(${name} STATIC ${PART_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(
        ${name} PUBLIC kelo_test_support Qt6::Test ${PART_LIBRARIES} PRIVATE Kelo::Rules
    )
endfunction()

# kelo_test(<name> <source>... [LIBRARIES <library>...] [DISPLAY] [TIMEOUT <seconds>])
#
# A Qt Test program that ctest knows by its name. DISPLAY gives it a virtual screen of its own
# that draws with software GL. What a test writes as a user stays inside the build folder.
function(kelo_test name)
    cmake_parse_arguments(PARSE_ARGV 1 TEST "DISPLAY" "TIMEOUT" "LIBRARIES")
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    set(home ${CMAKE_BINARY_DIR}/tests/home/${name})
    set(environment
        # Following memory of threads through the loader crashes the leak checker now and then, when a
        # thread of the graphics driver ends while it looks. What the loader allocates is read anyway.
        "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:intercept_tls_get_addr=0"
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
        "HOME=${home}"
        "XDG_CONFIG_HOME=${home}/config"
        "XDG_DATA_HOME=${home}/data"
        "XDG_CACHE_HOME=${home}/cache"
        "XDG_RUNTIME_DIR=${home}"
    )
    set(runner)
    if(TEST_DISPLAY)
        set(runner xvfb-run -a -s "-screen 0 1600x1000x24 -noreset")
        list(APPEND environment "QT_QPA_PLATFORM=xcb" "LIBGL_ALWAYS_SOFTWARE=1"
            "FONTCONFIG_FILE=${PROJECT_SOURCE_DIR}/tests/support/fonts.conf")
    endif()

    qt_add_executable(${name} ${TEST_UNPARSED_ARGUMENTS})
    if(TEST_DISPLAY AND KELO_SANITIZE)
        target_link_libraries(${name} PRIVATE kelo_keep_loaded)
        set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    endif()
    set_target_properties(
        ${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests
    )
    target_link_libraries(
        ${name} PRIVATE Kelo::Rules Qt6::Test kelo_test_support ${TEST_LIBRARIES}
    )
    if(TEST_LIBRARIES MATCHES "kelo_(visual|hud|welcome|app)")
        kelo_precompiled(${name} quick)
    else()
        kelo_precompiled(${name} core)
    endif()
    # It is nearly always empty; the headers would take longer to load than it to compile.
    set_source_files_properties(
        ${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON
    )
    file(MAKE_DIRECTORY ${home})
    file(CHMOD ${home} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    add_test(NAME ${name} COMMAND ${runner} $<TARGET_FILE:${name}>)
    set_tests_properties(
        ${name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT ${TEST_TIMEOUT}
    )
endfunction()
