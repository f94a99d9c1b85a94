# Sets the language, the warnings and the sanitizers, the same for every
# target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
# In code that may be loaded anywhere, the compiler inlines only functions that no other
# module can replace.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Newer compilers warn about more, which is no reason to fail the build.
if((CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13) OR
   (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15))
    add_compile_options(-Werror)
endif()
add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wcast-qual -Wcast-align -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi
    -Wredundant-decls -Wformat=2 -Wimplicit-fallthrough -Wundef -Wdouble-promotion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wsuggest-override -Wduplicated-cond -Wduplicated-branches -Wlogical-op)
    if(NOT QUILLON_SANITIZE)
        add_compile_options(-Wnull-dereference)
    endif()
else()
    add_compile_options(-Wthread-safety)
endif()

# g++ treats a unit of several sources as a header, and accepts no unnamed namespaces there.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-subobject-linkage)
endif()

# A mistake that writes out of bounds ends the program rather than serving an attacker: frames are
# guarded, calls of the C library check sizes, and the tables of functions are read-only before any
# code of ours runs.
add_compile_options(-fstack-protector-strong -fstack-clash-protection
                    "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)

# A fused multiply-add rounds once where the scorer rounds twice, so scores would differ between
# machines.
add_compile_options(-ffp-contract=off)

add_compile_definitions(
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
    QT_NO_URL_CAST_FROM_STRING)
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS> $<$<CONFIG:Debug>:QT_FORCE_ASSERTS>)

if(QUILLON_SANITIZE)
    # The code that a sanitizer adds makes this warning report reads inside the library that do
    # not happen.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    add_compile_options(-fsanitize=${QUILLON_SANITIZE} -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=${QUILLON_SANITIZE})
    if(QUILLON_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

# When g++ inlines the standard library and the toolkit, it warns about things that
# cannot happen in them.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-array-bounds -Wno-maybe-uninitialized -Wno-null-dereference
                        -Wno-restrict -Wno-stringop-overflow)
endif()
