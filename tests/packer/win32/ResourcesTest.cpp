// What the system itself finds in a module that the packer has written.

#include <gtest/gtest.h>
#include <windows.h>

#include "packer/ModuleWriter.h"
#include "platform/TemporaryPath.h"
#include "support/BuiltFiles.h"

namespace quillon::test {
namespace {

using Bytes = std::vector<std::byte>;

Bytes resourceOf(HMODULE module, HRSRC resource) {
    if (!resource) return {};
    const auto* bytes = static_cast<const std::byte*>(LockResource(LoadResource(module, resource)));
    return {bytes, bytes + SizeofResource(module, resource)};
}

TEST(ResourcesTest, AreFoundByTheSystem) {
    const WORD language = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
    ASSERT_EQ(language, 1033);
    const TemporaryFolder folder;
    const std::filesystem::path first = folder.path() / "first.aex", second = folder.path() / "second.aex";
    WriteModule(first, TemplateModule(), Bytes(5, std::byte{1}), Bytes(7, std::byte{2}));
    // Packed again, larger than the code in front of it.
    const Bytes package(3 << 20, std::byte{3}), description(294, std::byte{4});
    WriteModule(second, first, package, description);

    const HMODULE module = LoadLibraryW(second.c_str());
    ASSERT_TRUE(module) << GetLastError();
    EXPECT_EQ(resourceOf(module, FindResourceW(module, L"BLOB", RT_RCDATA)), package);
    EXPECT_EQ(resourceOf(module, FindResourceExW(module, RT_RCDATA, L"BLOB", language)), package);
    EXPECT_EQ(resourceOf(module, FindResourceW(module, MAKEINTRESOURCEW(16000), L"PIPL")), description);
    EXPECT_EQ(resourceOf(module, FindResourceExW(module, L"PIPL", MAKEINTRESOURCEW(16000), language)), description);
    EXPECT_TRUE(GetProcAddress(module, "EntryPointFunc"));
    FreeLibrary(module);
}

}  // namespace
}  // namespace quillon::test
