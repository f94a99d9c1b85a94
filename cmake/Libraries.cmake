# quillon_library(NAME SOURCES ... LINKS ...): one static library of the house.
# Headers are included from the repository root, as "matching/PathTree.h".
function(quillon_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_LINKS})
endfunction()
