# What `cmake --install build/release --prefix PLACE` puts where. The tool finds the templates of modules in lib beside
# its bin; the pages keep their folders, so that their links hold.
install(TARGETS quillon RUNTIME DESTINATION bin)
install(TARGETS module LIBRARY DESTINATION lib)
if(TARGET frei0r_module)
    install(TARGETS frei0r_module LIBRARY DESTINATION lib)
endif()
install(DIRECTORY effects/ DESTINATION share/quillon/effects)
install(FILES share/jsconfig.json share/quillon.d.ts DESTINATION share/quillon/editor)
# The manual pages, from the pages that the tool carries.
if(NOT WIN32)
    file(GLOB pages RELATIVE ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/docs/*.md)
    install(CODE "
        set(man \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/share/man)
        file(MAKE_DIRECTORY \${man}/man1 \${man}/man7)
        foreach(page ${pages})
            string(REPLACE .md \"\" topic \${page})
            set(file man7/quillon-\${topic}.7)
            if(topic STREQUAL tool)
                set(file man1/quillon.1)
            endif()
            execute_process(COMMAND $<TARGET_FILE:quillon> docs --man \${topic}
                            OUTPUT_FILE \${man}/\${file} COMMAND_ERROR_IS_FATAL ANY)
        endforeach()")
endif()
install(FILES README.md DESTINATION share/doc/quillon)
install(DIRECTORY docs DESTINATION share/doc/quillon)
