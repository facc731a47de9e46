# How every target of the repository is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# The pixel loops that matter are written with vectors by hand; the compiler's own attempts add size and no speed.
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# All code ends up inside a module that must share nothing with its neighbors in the process.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Equal results on every machine: no product is contracted into the sum that follows it.
add_compile_options(-ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
endif()

# A folder as one text: GCC takes each included source for a header, in which file-local types are a mistake.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
endif()

if(WIN32)
    add_compile_definitions(UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()

set(QUILLON_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
if(QUILLON_SANITIZE)
    add_compile_options(-fsanitize=${QUILLON_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QUILLON_SANITIZE})
    # What the sanitizers add to each access makes more optimization cost minutes and gain nothing.
    set(CMAKE_C_FLAGS_RELWITHDEBINFO "-O1 -g1")
    set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1")
endif()

find_program(QUILLON_CCACHE ccache)
if(QUILLON_CCACHE)
    # What was compiled for one clone of the repository serves the others.
    set(launcher env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=true ${QUILLON_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# The warnings for our own code; third-party sources are compiled without them.
add_library(quillon_warnings INTERFACE)
target_compile_options(quillon_warnings INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                       -Wimplicit-fallthrough -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlaps in plain string concatenations that are none.
    target_compile_options(quillon_warnings INTERFACE -Wno-restrict)
    # What sanitizers add hides from it that the standard library's own variables are set.
    if(QUILLON_SANITIZE)
        target_compile_options(quillon_warnings INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()
