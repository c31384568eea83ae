# ls_library(NAME SOURCES ... PUBLIC targets... PRIVATE targets...): a static library of this program.
# A target may include only what it links, so the arguments are the layers of the program.
function(ls_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ls_flags ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
endfunction()

# ls_program(NAME SOURCES ... LINK targets...): a program in the program folder.
function(ls_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ls_flags ${arg_LINK})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()
