// What this system's loader sees of the module, and what the module does without a driver.

#include <dlfcn.h>
#include <elf.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "host/HostSession.h"
#include "packer/ModuleWriter.h"
#include "support/BuiltFiles.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

std::vector<std::string> ExportsOf(const std::filesystem::path& module) {
    std::ifstream in(module, std::ios::binary);
    const std::string image{std::istreambuf_iterator<char>(in), {}};
    const auto at = [&]<class Record>(Record, std::size_t offset) {
        Record record;
        std::memcpy(&record, image.substr(offset, sizeof record).data(), sizeof record);
        return record;
    };
    const auto header = at(Elf64_Ehdr{}, 0);
    std::vector<std::string> exported;
    for (std::size_t s = 0; s < header.e_shnum; ++s) {
        const auto table = at(Elf64_Shdr{}, header.e_shoff + s * sizeof(Elf64_Shdr));
        if (table.sh_type != SHT_DYNSYM) continue;
        const auto names = at(Elf64_Shdr{}, header.e_shoff + table.sh_link * sizeof(Elf64_Shdr));
        for (std::size_t i = 0; i < table.sh_size / sizeof(Elf64_Sym); ++i) {
            const auto symbol = at(Elf64_Sym{}, table.sh_offset + i * sizeof(Elf64_Sym));
            const bool isOurs = symbol.st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) != STB_LOCAL;
            if (isOurs) exported.emplace_back(image.c_str() + names.sh_offset + symbol.st_name);
        }
    }
    return exported;
}

TEST(ModuleFile, ExportsWhatHostsLookUpAndNothingElse) {
    EXPECT_THAT(ExportsOf(TemplateModule()), testing::ElementsAre("EntryPointFunc"));
    EXPECT_THAT(ExportsOf(PluginTemplate()),
                testing::UnorderedElementsAre("f0r_init", "f0r_deinit", "f0r_get_plugin_info", "f0r_get_param_info",
                                              "f0r_construct", "f0r_destruct", "f0r_set_param_value",
                                              "f0r_get_param_value", "f0r_update", "f0r_update2"));
}

TEST(ModuleFile, LoadedByARelativeNameFindsItsPackageFromAnyFolder) {
    const TemporaryFolder folder;
    const Files files = {{"fx.js", CopyScript(true)}, {"config.xml", kConfig}};
    WriteModule(folder.path() / "effect.so", TemplateModule(), ScrambledPackage(files));
    const std::filesystem::path home = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    void* const module = dlopen("./effect.so", RTLD_NOW | RTLD_LOCAL);
    std::filesystem::current_path(home);
    ASSERT_TRUE(module) << dlerror();
    const auto entry = reinterpret_cast<host::EntryPoint>(dlsym(module, "EntryPointFunc"));
    EXPECT_EQ(host::HostSession(host::EffectModule(entry, module)).globalSetup().error, 0);
}

// In another process, since the driver is loaded once a process.
TEST(ModuleFileDeathTest, WithoutOpenGLTheStartAnswers512AndWritesNothing) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto run = [&] {
        setenv("LIBGL_DRIVERS_PATH", "none", 1);
        const TestEffect effect({{"fx.js", CopyScript(true)}, {"config.xml", kConfig}}, TemplateModule());
        host::HostSession session{host::EffectModule(effect.file())};
        const host::Answer answer = session.globalSetup();
        const bool isUnwritten = answer.out.my_version == 0 && answer.out.out_flags == 0 && !answer.out.global_data;
        std::_Exit(answer.error == 512 && isUnwritten ? 0 : 1);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace quillon::test
