#include "Plugin.h"

#include <dlfcn.h>

#include <stdexcept>

#include "packer/ModuleWriter.h"

namespace quillon::test {

PluginFile::PluginFile(const Files& files, const frei0r::Listing& listing, const std::string& name)
    : file(folder.path() / (name + ".so")) {
    WriteModule(file, PluginTemplate(), ScrambledPackage(files), frei0r::WriteListing(listing));
}

Plugin::Plugin(const std::filesystem::path& file) : handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle) throw std::runtime_error(dlerror());
    find<int()>("f0r_init")();
}

Plugin::~Plugin() {
    find<void()>("f0r_deinit")();
    dlclose(handle);
}

void* Plugin::symbol(const char* name) const {
    void* const found = dlsym(handle, name);
    if (!found) throw std::runtime_error(std::string("no ") + name);
    return found;
}

Pixels Plugin::update(void* instance, std::size_t pixels, const Pixels& first, const Pixels& second, double time) {
    using Update2 =
        void(void*, double, const std::uint32_t*, const std::uint32_t*, const std::uint32_t*, std::uint32_t*);
    Pixels out(pixels, 0xDDDDDDDD);
    const auto dataOf = [](const Pixels& input) { return input.empty() ? nullptr : input.data(); };
    find<Update2>("f0r_update2")(instance, time, dataOf(first), dataOf(second), nullptr, out.data());
    return out;
}

Pixels Plugin::frame(std::uint32_t width, std::uint32_t height, const Pixels& first, const Pixels& second) {
    void* const instance = construct(width, height);
    const Pixels out = update(instance, std::size_t{width} * height, first, second);
    destruct(instance);
    return out;
}

}  // namespace quillon::test
