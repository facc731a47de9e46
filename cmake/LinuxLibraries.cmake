# What the distribution has built.

find_package(PkgConfig REQUIRED)

# Header-only libraries live in the system's include folder.
find_path(RAPIDXML_INCLUDE rapidxml/rapidxml.hpp REQUIRED)
find_path(STB_INCLUDE stb/stb_image.h REQUIRED)
find_path(CLI11_INCLUDE CLI/CLI.hpp REQUIRED)

# OpenGL without a window, and its entry points. GLEW is linked statically: its table of pointers is a part of the
# module's state.
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)
add_library(window_system INTERFACE)
target_link_libraries(window_system INTERFACE OpenGL::EGL)
find_library(GLEW_STATIC_LIBRARY libGLEW.a REQUIRED)
add_library(glew_static INTERFACE)
target_link_libraries(glew_static INTERFACE ${GLEW_STATIC_LIBRARY} OpenGL::GL)

# Picture files of the tool.
find_package(nlohmann_json REQUIRED)
# By its .pc file: the distribution's CMake files name a Python library that is not installed with it.
pkg_check_modules(OPENEXR REQUIRED IMPORTED_TARGET GLOBAL OpenEXR)
add_library(OpenEXR::OpenEXR ALIAS PkgConfig::OPENEXR)
find_package(fmt REQUIRED)
find_path(LODEPNG_INCLUDE lodepng.h REQUIRED)
find_library(LODEPNG_LIBRARY lodepng REQUIRED)
add_library(lodepng INTERFACE)
target_link_libraries(lodepng INTERFACE ${LODEPNG_LIBRARY})
target_include_directories(lodepng SYSTEM INTERFACE ${LODEPNG_INCLUDE})
find_path(LIBDEFLATE_INCLUDE libdeflate.h REQUIRED)
find_library(LIBDEFLATE_LIBRARY deflate REQUIRED)
add_library(libdeflate INTERFACE)
target_link_libraries(libdeflate INTERFACE ${LIBDEFLATE_LIBRARY})
target_include_directories(libdeflate SYSTEM INTERFACE ${LIBDEFLATE_INCLUDE})
pkg_check_modules(TIFF REQUIRED IMPORTED_TARGET GLOBAL libtiff-4)
add_library(libtiff ALIAS PkgConfig::TIFF)

# The pages of the documentation.
pkg_check_modules(MD4C REQUIRED IMPORTED_TARGET GLOBAL md4c)
add_library(md4c ALIAS PkgConfig::MD4C)

find_package(GTest REQUIRED)
