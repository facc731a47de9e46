# What `cmake --install build/release --prefix PLACE` puts where. The tool finds the templates of modules in lib beside
# its bin; the pages keep their folders, so that their links hold.
install(TARGETS quillon RUNTIME DESTINATION bin)
install(TARGETS module LIBRARY DESTINATION lib)
if(TARGET frei0r_module)
    install(TARGETS frei0r_module LIBRARY DESTINATION lib)
endif()
install(DIRECTORY effects/ DESTINATION share/quillon/effects)
install(FILES share/jsconfig.json share/quillon.d.ts DESTINATION share/quillon/editor)
install(FILES README.md DESTINATION share/doc/quillon)
install(DIRECTORY docs DESTINATION share/doc/quillon)
