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

# Adds a program that measures, for the four functions below; `ctest -L bench` runs each once, so that none rots.
# Further arguments: [MANAGER none|openbox], with which it runs on a display, RUN arguments of that run,
# SOURCES ... LINK targets...
function(ls_add_measurement name)
    cmake_parse_arguments(arg "" "MANAGER" "RUN;SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ${arg_LINK})
    set(command $<TARGET_FILE:${name}> ${arg_RUN})
    if(arg_MANAGER)
        list(PREPEND command ${CMAKE_SOURCE_DIR}/scripts/with_display.sh ${arg_MANAGER})
    endif()
    add_test(NAME bench.${name} COMMAND ${command})
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300)
endfunction()

# ls_bench(NAME SOURCES ... LINK targets...): benchmarks of single functions.
function(ls_bench name)
    ls_add_measurement(${name} RUN --benchmark_min_time=0 ${ARGN} benchmark::benchmark)
endfunction()

# ls_gui_bench(NAME SOURCES ... LINK targets...): the same with windows.
function(ls_gui_bench name)
    ls_add_measurement(${name} MANAGER none RUN --benchmark_min_time=0 ${ARGN} benchmark::benchmark)
endfunction()

# ls_ratios(NAME SOURCES ... LINK targets...): a program with rows of the table that `./test --bench` prints, by
# RatioTable. Its name ends in _ratios.
function(ls_ratios name)
    ls_add_measurement(${name} RUN --once ${ARGN} ls_bench_support)
endfunction()

# ls_gui_ratios(NAME SOURCES ... LINK targets...): the same with windows; its name ends in _window_ratios.
function(ls_gui_ratios name)
    ls_add_measurement(${name} MANAGER openbox RUN --once ${ARGN} ls_bench_support)
endfunction()

# ls_gui_test(NAME SOURCES ... LINK targets...): a test program that shows windows. It runs on a display of its
# own, with a window manager.
function(ls_gui_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ls_gui_test_support ${arg_LINK} GTest::gmock)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/scripts/with_display.sh openbox $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES LABELS gui TIMEOUT 600)
endfunction()
