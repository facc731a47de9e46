# What `cmake --install build/release --prefix PLACE` puts where, and `cpack` into a package. The tool finds the templates of
# modules in lib beside the bin that it is in, and is started through a link. The pages keep their folders, so that their
# links hold.
if(WIN32)
    return()  # `./dev windows` makes a zip
endif()
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)  # tests are not installed
set(home lib/quillon)
install(TARGETS quillon RUNTIME DESTINATION ${home}/bin)
install(TARGETS module frei0r_module LIBRARY DESTINATION ${home}/lib)
# From `./dev windows`, where that has run.
install(FILES ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/quillon_module.aex DESTINATION ${home}/lib OPTIONAL)
install(DIRECTORY effects/ DESTINATION share/quillon/effects)
install(FILES share/jsconfig.json share/quillon.d.ts DESTINATION share/quillon/editor)
install(FILES README.md CHANGELOG.md DESTINATION share/doc/quillon)
install(DIRECTORY docs DESTINATION share/doc/quillon)

# The link, the manual pages and what shells complete by: the tool writes them itself.
file(GLOB pages RELATIVE ${PROJECT_SOURCE_DIR}/docs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
install(CODE "
    set(place \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX})
    file(MAKE_DIRECTORY \${place}/bin)
    file(CREATE_LINK ../${home}/bin/quillon \${place}/bin/quillon SYMBOLIC)
    function(write file)
        get_filename_component(folder \${place}/share/\${file} DIRECTORY)
        file(MAKE_DIRECTORY \${folder})
        execute_process(COMMAND $<TARGET_FILE:quillon> \${ARGN} OUTPUT_FILE \${place}/share/\${file}
                        COMMAND_ERROR_IS_FATAL ANY)
    endfunction()
    foreach(page ${pages})
        string(REPLACE .md \"\" topic \${page})
        if(topic STREQUAL tool)
            write(man/man1/quillon.1 docs --man tool)
        else()
            write(man/man7/quillon-\${topic}.7 docs --man \${topic})
        endif()
    endforeach()
    write(bash-completion/completions/quillon completion bash)
    write(zsh/vendor-completions/_quillon completion zsh)
    write(fish/vendor_completions.d/quillon.fish completion fish)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the authors of Quillon <quillon@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "renders, checks and packs shader effects for video programs")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The driver is loaded by name, so that nothing that is linked asks for it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS libgl1-mesa-dri)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ffmpeg, xdg-utils")
include(CPack)
