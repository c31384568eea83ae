# How our own code is compiled, in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g")

find_program(LS_CCACHE ccache)
if(LS_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${LS_CCACHE})
endif()

add_library(ls_flags INTERFACE)
target_include_directories(ls_flags INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/Include)
# Results must keep their bits on every machine: no contraction into fused multiply-add, no fast-math.
# The prefix map keeps the place of the build out of assertion texts.
target_compile_options(ls_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    -ffp-contract=off -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
if(LS_SANITIZE)
    # float-cast-overflow: what `undefined` leaves out.
    # The sanitizers' instrumentation makes GCC 12 see uninitialised values inside the standard library.
    target_compile_options(ls_flags INTERFACE
        -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer
        -Wno-maybe-uninitialized)
    target_link_options(ls_flags INTERFACE -fsanitize=address,undefined)
endif()
if(LS_FUZZ)
    # Warnings are the other compiler's affair.
    target_compile_options(ls_flags INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow -fno-sanitize-recover=all
        -fno-omit-frame-pointer -Wno-error)
    target_link_options(ls_flags INTERFACE -fsanitize=address,undefined)
endif()
