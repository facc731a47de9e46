#include "cli/WholeFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <system_error>

#include "cli/System.h"
#include "cli/ToolError.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// Gone at the end of the scope unless it was renamed.
struct TemporaryName {
    fs::path path;
    ~TemporaryName() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
};

// `error` is an errno, or 0 when the system gave no reason.
ToolError CannotWrite(const fs::path& path, int error) {
    return Fault(fmt::format("{}: cannot be written: {}; choose another place with -o", path.string(),
                             error != 0 ? std::strerror(error) : "no reason was given"));
}

}  // namespace

std::vector<std::byte> ReadWholeFile(const fs::path& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        throw Fault(fmt::format("{}: is a folder; a file is needed here", path.string()));
    }
    errno = 0;
    const File file(OpenFile(path, "rb"));
    std::vector<std::byte> bytes;
    std::size_t filled = 0;
    while (file) {
        bytes.resize(filled + std::max<std::size_t>(filled, 1 << 16));
        const std::size_t count = std::fread(bytes.data() + filled, 1, bytes.size() - filled, file.get());
        filled += count;
        if (count == 0) break;
    }
    if (!file || std::ferror(file.get())) {
        throw Fault(fmt::format("{}: cannot be read: {}; check the name", path.string(), std::strerror(errno)));
    }
    bytes.resize(filled);
    return bytes;
}

void WriteWholeFile(const fs::path& path, std::span<const std::byte> bytes) {
    fs::path name = ".";
    name += path.filename();
    name += fmt::format(".{:08x}", std::random_device{}());
    const fs::path temporary = path.parent_path() / name;
    errno = 0;
    File file(OpenFile(temporary, "wbx"));
    if (!file) throw CannotWrite(path, errno);
    const TemporaryName guard{temporary};
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    if (!written || std::fflush(file.get()) != 0) throw CannotWrite(path, errno);
    if (std::fclose(file.release()) != 0) throw CannotWrite(path, errno);
    std::error_code renamed;
    fs::rename(temporary, path, renamed);
    if (renamed) throw CannotWrite(path, renamed.value());
}

}  // namespace quillon::cli
