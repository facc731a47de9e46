# quillon_folder(NAME [PUBLIC folder...] [PRIVATE folder...] [LIBRARIES target...])
#
# Makes the static library quillon::NAME of the sources in the calling folder. Its headers are included as
# "NAME/Header.h", and only by targets that link it: the include path of each folder holds that folder alone, so an
# include that the architecture does not allow does not build.
function(quillon_folder name)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE;LIBRARIES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    if(WIN32)
        file(GLOB system_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/win32/*.cpp)
    else()
        file(GLOB system_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/posix/*.cpp)
    endif()

    set(include_root ${PROJECT_BINARY_DIR}/include/${name})
    file(MAKE_DIRECTORY ${include_root})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include_root}/${name} SYMBOLIC)

    add_library(quillon_${name} STATIC ${sources} ${system_sources})
    add_library(quillon::${name} ALIAS quillon_${name})
    set_target_properties(quillon_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(quillon_${name} PUBLIC ${include_root})
    list(TRANSFORM arg_PUBLIC PREPEND quillon::)
    list(TRANSFORM arg_PRIVATE PREPEND quillon::)
    target_link_libraries(quillon_${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} ${arg_LIBRARIES} quillon_warnings)
endfunction()
