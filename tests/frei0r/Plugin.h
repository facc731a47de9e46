#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frei0r/Listing.h"
#include "support/TestEffect.h"

namespace quillon::test {

using Pixels = std::vector<std::uint32_t>;  // words of R, G, B, A in memory, the top row first

// An effect packed as a plug-in, in a file with the name that hosts know it by.
class PluginFile {
public:
    explicit PluginFile(const Files& files, const frei0r::Listing& listing = {}, const std::string& name = "plugin");

    std::filesystem::path path() const { return file; }

private:
    TemporaryFolder folder;
    std::filesystem::path file;
};

// A plug-in as a host loads it, for the life of the object.
class Plugin {
public:
    explicit Plugin(const std::filesystem::path& file);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // One frame of a new or a given instance; transparent black without an input.
    Pixels update(void* instance, std::size_t pixels, const Pixels& first, const Pixels& second = {}, double time = 0);
    Pixels frame(std::uint32_t width, std::uint32_t height, const Pixels& first, const Pixels& second = {});

    template <class Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(symbol(name));
    }
    void* construct(unsigned width, unsigned height) {
        return find<void*(unsigned, unsigned)>("f0r_construct")(width, height);
    }
    void destruct(void* instance) { find<void(void*)>("f0r_destruct")(instance); }

private:
    void* symbol(const char* name) const;

    void* handle = nullptr;
};

}  // namespace quillon::test
