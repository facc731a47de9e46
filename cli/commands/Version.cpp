#include "cli/commands/Version.h"

#include <GL/glew.h>
#include <OpenEXRConfig.h>
#include <duktape.h>
#include <fmt/format.h>
#include <libdeflate.h>
#include <lodepng.h>
#include <tiffio.h>

#include <algorithm>
#include <string_view>

namespace quillon::cli {

extern const char* const kCommit;  // written by cmake/Commit.cmake

namespace {

// "4.5.0" of the several lines that the library says of itself.
std::string TiffVersion() {
    const std::string_view text = TIFFGetVersion();
    const std::size_t start = std::min(text.find_first_of("0123456789"), text.size());
    return std::string(text.substr(start, text.find_first_not_of("0123456789.", start) - start));
}

}  // namespace

std::string VersionText() {
    const std::string commit = *kCommit ? fmt::format(" ({})", kCommit) : "";
    return fmt::format("quillon " QUILLON_VERSION
                       "{}\nDuktape {}.{}.{}, GLEW {}, OpenEXR {}, LibTIFF {}, libdeflate {}, LodePNG {}",
                       commit, DUK_VERSION / 10000, DUK_VERSION / 100 % 100, DUK_VERSION % 100,
                       reinterpret_cast<const char*>(glewGetString(GLEW_VERSION)), OPENEXR_VERSION_STRING,
                       TiffVersion(), LIBDEFLATE_VERSION_STRING, LODEPNG_VERSION_STRING);
}

}  // namespace quillon::cli
