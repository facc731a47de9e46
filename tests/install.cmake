# The installed tool finds its template, and the samples and pages are where they should be.
file(REMOVE_RECURSE ${PLACE})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PLACE} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PLACE}/bin/quillon pack ${PLACE}/share/quillon/effects/glow -o ${PLACE}/glow.so
                COMMAND_ERROR_IS_FATAL ANY)
file(READ ${PLACE}/share/man/man7/quillon-script-api.7 manual)
if(NOT EXISTS ${PLACE}/share/man/man1/quillon.1 OR NOT manual MATCHES "QL_renderShader")
    message(FATAL_ERROR "the manual pages are not installed")
endif()
if(NOT EXISTS ${PLACE}/share/doc/quillon/docs/tool.md)
    message(FATAL_ERROR "the pages are not installed")
endif()
