# Debian's libraries, each as one target.

if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12)
    message(FATAL_ERROR "GCC 12 or newer is needed; this is ${CMAKE_CXX_COMPILER_VERSION}.")
endif()
find_package(PkgConfig REQUIRED)
find_package(OpenEXR 3.1 REQUIRED)
find_package(TIFF 4.5 REQUIRED)
find_package(X11 REQUIRED)
# Its name is fixed, since the solver holds this library to one thread by a call of its own.
set(BLA_VENDOR OpenBLAS)
find_package(LAPACK REQUIRED)
pkg_check_modules(EXIV2 REQUIRED IMPORTED_TARGET exiv2>=0.27.6)
pkg_check_modules(TINYXML REQUIRED IMPORTED_TARGET tinyxml>=2.6)
pkg_check_modules(HIGHWAY REQUIRED IMPORTED_TARGET libhwy>=1.0.3)

# Kernels, compiled for the instruction sets that are worth it. Of what Highway knows, the better sets have the lower
# bits: so nothing above AVX2 and NEON, and nothing between AVX2 and what every processor of today has.
add_library(ls_highway INTERFACE)
target_link_libraries(ls_highway INTERFACE PkgConfig::HIGHWAY)
target_compile_definitions(ls_highway INTERFACE
    "HWY_DISABLED_TARGETS=(HWY_ARCH_X86?(HWY_AVX2-1)|HWY_SSE4:HWY_NEON-1)")

# ls_wx(NAME components...): wxWidgets as wx-config gives it, with its headers as system headers.
function(ls_wx name)
    find_package(wxWidgets 3.2 REQUIRED COMPONENTS ${ARGN})
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
    target_compile_definitions(${name} INTERFACE ${wxWidgets_DEFINITIONS})
    target_compile_options(${name} INTERFACE ${wxWidgets_CXX_FLAGS})
    target_link_directories(${name} INTERFACE ${wxWidgets_LIBRARY_DIRS})
    target_link_libraries(${name} INTERFACE ${wxWidgets_LIBRARIES})
endfunction()

# Without windows: most window headers refuse to compile in a target that links this.
ls_wx(ls_wx_base base)
target_compile_definitions(ls_wx_base INTERFACE wxUSE_GUI=0)

# Images, for which no display is needed. Window headers are kept out by scripts/check_layers.sh.
ls_wx(ls_wx_core core base)

# Windows.
ls_wx(ls_wx_gui aui net core base)
# Targets with windows precompile the library's headers; this lets ccache keep the result.
target_compile_options(ls_wx_gui INTERFACE -fpch-preprocess)
