// What this system's loader sees of the module.

#include <gmock/gmock.h>
#include <windows.h>

#include <string>
#include <vector>

#include "host/ModuleLoading.h"
#include "support/BuiltFiles.h"

namespace quillon::test {
namespace {

class ModuleFile : public ::testing::Test {
protected:
    void SetUp() override {
        std::string reason;
        image = static_cast<const std::byte*>(host::LoadModule(TemplateModule(), reason));
        ASSERT_TRUE(image) << reason;
    }

    // What is at an address of the loaded image.
    template <class Record>
    const Record* at(DWORD address) const {
        return reinterpret_cast<const Record*>(image + address);
    }
    template <class Record>
    const Record* directory(int index) const {
        const auto* headers = at<IMAGE_NT_HEADERS64>(static_cast<DWORD>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
        return at<Record>(headers->OptionalHeader.DataDirectory[index].VirtualAddress);
    }

    const std::byte* image = nullptr;
};

TEST_F(ModuleFile, ExportsItsEntryAndNothingElse) {
    const auto& exports = *directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    ASSERT_EQ(exports.NumberOfFunctions, 1u);
    ASSERT_EQ(exports.NumberOfNames, 1u);
    EXPECT_STREQ(at<char>(*at<DWORD>(exports.AddressOfNames)), "EntryPointFunc");
}

TEST_F(ModuleFile, NeedsNothingButWhatEveryWindowsHas) {
    std::vector<std::string> libraries;
    for (auto* import = directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT); import->Name; ++import)
        libraries.emplace_back(at<char>(import->Name));
    EXPECT_THAT(libraries,
                testing::IsSubsetOf({"KERNEL32.dll", "USER32.dll", "GDI32.dll", "OPENGL32.dll", "msvcrt.dll"}));
}

}  // namespace
}  // namespace quillon::test
