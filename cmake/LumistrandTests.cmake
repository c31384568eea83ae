# Test and benchmark programs.

include(GoogleTest)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)

# ls_test(NAME SOURCES ... LINK targets... [LABEL unit|faults] [TIMEOUT seconds]): one test program of a
# folder. Its main function redirects the cache folder, makes a library's assertion fatal and gives each run
# a private home.
function(ls_test name)
    cmake_parse_arguments(arg "" "LABEL;TIMEOUT" "SOURCES;LINK" ${ARGN})
    if(NOT arg_LABEL)
        set(arg_LABEL unit)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ls_test_support ${arg_LINK} GTest::gmock)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${arg_TIMEOUT})
endfunction()

# ls_bench(NAME SOURCES ... LINK targets...): benchmarks; ctest runs each once, so that none rots.
function(ls_bench name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ${arg_LINK} benchmark::benchmark)
    add_test(NAME bench.${name} COMMAND ${name} --benchmark_min_time=0)
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300)
endfunction()

# ls_ratios(NAME SOURCES ... LINK targets...): a program with rows of the table that `./test --bench` prints, by
# RatioTable. Its name ends in _ratios. ctest runs each once, for one round.
function(ls_ratios name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ls_bench_support ${arg_LINK})
    add_test(NAME bench.${name} COMMAND ${name} --once)
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300)
endfunction()

# ls_gui_ratios(NAME SOURCES ... LINK targets...): the same with windows; its name ends in _window_ratios.
function(ls_gui_ratios name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ls_bench_support ${arg_LINK})
    add_test(NAME bench.${name}
        COMMAND ${CMAKE_SOURCE_DIR}/scripts/with_display.sh openbox $<TARGET_FILE:${name}> --once)
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300 RESOURCE_LOCK display)
endfunction()

# ls_gui_test(NAME SOURCES ... LINK targets...): a test program that shows windows. It runs twice on displays of
# its own, with and without a window manager.
function(ls_gui_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ls_gui_test_support ${arg_LINK} GTest::gmock)
    foreach(manager none openbox)
        add_test(NAME ${name}.${manager}
            COMMAND ${CMAKE_SOURCE_DIR}/scripts/with_display.sh ${manager} $<TARGET_FILE:${name}>)
        # One at a time: two servers that start at once may want the same display.
        set_tests_properties(${name}.${manager} PROPERTIES LABELS gui TIMEOUT 600 RESOURCE_LOCK display)
    endforeach()
endfunction()

# ls_gui_bench(NAME SOURCES ... LINK targets...): benchmarks that show windows; ctest runs each once.
function(ls_gui_bench name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ${arg_LINK} benchmark::benchmark)
    add_test(NAME bench.${name}
        COMMAND ${CMAKE_SOURCE_DIR}/scripts/with_display.sh none $<TARGET_FILE:${name}> --benchmark_min_time=0)
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300)
endfunction()
