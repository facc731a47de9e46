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

# It chooses vector code as it runs.
file(GLOB libdeflate_sources ${QUILLON_SOURCES}/libdeflate/lib/*.c ${QUILLON_SOURCES}/libdeflate/lib/x86/*.c)
add_library(libdeflate STATIC ${libdeflate_sources})
target_include_directories(libdeflate SYSTEM PUBLIC ${QUILLON_SOURCES}/libdeflate)
target_compile_options(libdeflate PRIVATE -w)

add_library(md4c STATIC ${QUILLON_SOURCES}/md4c/md4c.c)
target_include_directories(md4c SYSTEM PUBLIC ${QUILLON_SOURCES}/md4c)
target_compile_definitions(md4c PRIVATE MD4C_USE_UTF8)
target_compile_options(md4c PRIVATE -w)

set(ZLIB_USE_STATIC_LIBS ON)
foreach(library openexr tiff)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/build-windows-library.sh ${library} ${QUILLON_SOURCES}
                    OUTPUT_VARIABLE place OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND CMAKE_FIND_ROOT_PATH ${place})
endforeach()
find_package(OpenEXR REQUIRED CONFIG)
find_package(ZLIB REQUIRED)
find_package(TIFF REQUIRED)
add_library(libtiff INTERFACE)
target_link_libraries(libtiff INTERFACE TIFF::TIFF ZLIB::ZLIB)

# The distribution's GoogleTest sources.
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
