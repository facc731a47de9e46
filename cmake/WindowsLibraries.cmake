# The same libraries for Windows, which the distribution has as sources and as headers. Everything is linked statically:
# modules and tool need nothing but what every Windows has.

# Header-only libraries, one link each: the system's include folder holds much more.
set(header_links ${PROJECT_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${header_links})
foreach(name rapidxml stb CLI nlohmann fmt)
    if(NOT IS_DIRECTORY /usr/include/${name})
        message(FATAL_ERROR "the headers of ${name} are not installed; ./dev windows does that")
    endif()
    file(CREATE_LINK /usr/include/${name} ${header_links}/${name} SYMBOLIC)
endforeach()
set(RAPIDXML_INCLUDE ${header_links})
set(STB_INCLUDE ${header_links})
set(CLI11_INCLUDE ${header_links})
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${header_links})
add_library(fmt::fmt INTERFACE IMPORTED)
target_include_directories(fmt::fmt SYSTEM INTERFACE ${header_links})
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)

add_library(window_system INTERFACE)
target_link_libraries(window_system INTERFACE opengl32 gdi32 user32)

add_library(glew_static STATIC ${QUILLON_SOURCES}/glew/glew.c)
target_include_directories(glew_static SYSTEM PUBLIC ${QUILLON_SOURCES}/glew)
target_compile_definitions(glew_static PUBLIC GLEW_STATIC)
target_compile_options(glew_static PRIVATE -w)
target_link_libraries(glew_static PUBLIC opengl32 gdi32)

add_library(lodepng STATIC ${QUILLON_SOURCES}/lodepng/lodepng.cpp)
target_include_directories(lodepng SYSTEM PUBLIC ${QUILLON_SOURCES}/lodepng)
target_compile_options(lodepng PRIVATE -w)

execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/build-openexr.sh ${QUILLON_SOURCES}
                OUTPUT_VARIABLE openexr OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(ZLIB_USE_STATIC_LIBS ON)
list(APPEND CMAKE_FIND_ROOT_PATH ${openexr})
find_package(OpenEXR REQUIRED CONFIG)

# The distribution's GoogleTest sources.
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
