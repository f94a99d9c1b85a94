# quillon_library(NAME SOURCES ... LINKS ... [PRECOMPILED KIND]) adds one static library. Headers
# are included from the repository root, as in "matching/PathTree.h". The kind of precompiled
# headers is STANDARD unless another one is named.
function(quillon_library name)
    cmake_parse_arguments(arg "" "PRECOMPILED" "SOURCES;LINKS" PRECOMPILED STANDARD ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_LINKS})
    quillon_precompile(${name} ${arg_PRECOMPILED})
endfunction()
