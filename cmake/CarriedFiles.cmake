# quillon_carry(TARGET FUNCTION BASE file...)
#
# The tool carries these files, so that it needs nothing beside it. Makes a source of `target` that defines
# std::span<const CarriedFile> quillon::cli::FUNCTION(), with the files' names relative to BASE; see
# cli/system/CarriedFile.h.
function(quillon_carry target function base)
    set(entries)
    foreach(file ${ARGN})
        file(RELATIVE_PATH name ${base} ${file})
        file(READ ${file} content)
        # In pieces: compilers limit the length of one literal.
        string(REPLACE "\n\n" "\n)file\" R\"file(\n" content "${content}")
        string(APPEND entries "    {\"${name}\", R\"file(${content})file\"},\n")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    endforeach()
    file(CONFIGURE OUTPUT ${function}.cpp @ONLY CONTENT "#include <span>

#include \"cli/system/CarriedFile.h\"

namespace quillon::cli {

namespace {

constexpr CarriedFile k${function}[] = {
@entries@};

}  // namespace

std::span<const CarriedFile> ${function}() {
    return k${function};
}

}  // namespace quillon::cli
")
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${function}.cpp)
endfunction()
