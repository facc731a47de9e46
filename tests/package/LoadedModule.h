#pragma once

#include <dlfcn.h>

#include <fstream>
#include <stdexcept>
#include <string>

#include "packer/Archive.h"
#include "support/TestEffect.h"

namespace quillon::test {

// A module of the test's own making, loaded: the carrier's image with these bytes behind it.
class LoadedModule {
public:
    explicit LoadedModule(const std::string& bytesBehindImage) {
        const std::filesystem::path path = folder.path() / "module.so";
        std::filesystem::copy_file(QUILLON_CARRIER, path);
        std::ofstream(path, std::ios::binary | std::ios::app) << bytesBehindImage;
        library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library) throw std::runtime_error(dlerror());
    }
    ~LoadedModule() { dlclose(library); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    void* handle() const { return library; }

private:
    TemporaryFolder folder;
    void* library = nullptr;
};

// What makes a package of the bytes in front of it.
inline std::string Trailer(std::uint32_t packageBytes) {
    std::string trailer;
    for (int i = 0; i < 4; ++i) trailer.push_back(static_cast<char>(packageBytes >> (8 * i)));
    return trailer + "QuillonBLOB1";
}

// What lies behind the image of a module that carries this archive.
inline std::string Packaged(const std::string& archive) {
    const auto bytes = Scramble(std::as_bytes(std::span(archive)));
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()) +
           Trailer(static_cast<std::uint32_t>(bytes.size()));
}

}  // namespace quillon::test
