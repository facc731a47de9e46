# quillon_folder(NAME [PUBLIC folder...] [PRIVATE folder...] [LIBRARIES target...])
#
# Makes the static library quillon::NAME of the sources in the calling folder. Its headers are included as
# "NAME/Header.h", and only by targets that link it: the include path of each folder holds only that folder, so an
# include that the architecture does not allow does not build. A NAME with a slash, as of a folder in a folder, makes
# the target quillon::OUTER_INNER.
function(quillon_folder name)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE;LIBRARIES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    if(WIN32)
        file(GLOB system_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/win32/*.cpp)
    else()
        file(GLOB system_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/posix/*.cpp)
    endif()

    string(REPLACE "/" "_" target ${name})
    set(include_root ${PROJECT_BINARY_DIR}/include/${target})
    get_filename_component(link_folder ${include_root}/${name} DIRECTORY)
    file(MAKE_DIRECTORY ${link_folder})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include_root}/${name} SYMBOLIC)

    add_library(quillon_${target} STATIC ${sources} ${system_sources})
    add_library(quillon::${target} ALIAS quillon_${target})
    set_target_properties(quillon_${target} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(quillon_${target} PUBLIC ${include_root})
    foreach(links arg_PUBLIC arg_PRIVATE)
        list(TRANSFORM ${links} REPLACE "/" "_")
        list(TRANSFORM ${links} PREPEND quillon::)
    endforeach()
    target_link_libraries(quillon_${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} ${arg_LIBRARIES} quillon_warnings)
endfunction()
