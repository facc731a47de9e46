#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/system/ModuleKind.h"
#include "platform/Utf8Path.h"
#include "support/BuiltFiles.h"
#include "support/EngineTest.h"
#include "support/TestEffect.h"

namespace quillon::test {

struct ToolRun {
    int status = -1;  // exit status; -1 when the tool was ended by a signal
    std::string out;
    std::string err;
};

// Runs the tool as a user does, in a folder of the test's own.
class ToolTest : public ::testing::Test {
protected:
    // `arguments` is a part of a shell's command line; `environment` goes in front of the tool's name.
    ToolRun run(const std::string& arguments, const std::string& environment = "") const;

    // Makes the folder `name` with these files, and a config.xml unless there is one among them.
    void addEffect(const std::string& name, const Files& files) const;
    // The effect "copy": hands its input on, pixel by pixel.
    void addCopyEffect() const;

    void writeFile(const std::string& name, const std::string& content) const;
    std::string readFile(const std::string& name) const;
    bool exists(const std::string& name) const { return std::filesystem::exists(folder.path() / PathFromUtf8(name)); }
    // Names in the folder, sorted.
    std::vector<std::string> list() const;

    template <class T>
    void writeSamples(const std::string& name, const std::vector<T>& samples) const {
        writeFile(name, {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(T)});
    }
    template <class T>
    std::vector<T> readSamples(const std::string& name) const {
        const std::string bytes = readFile(name);
        std::vector<T> samples(bytes.size() / sizeof(T));
        bytes.copy(reinterpret_cast<char*>(samples.data()), samples.size() * sizeof(T));
        return samples;
    }

    // A module that this system loads.
    static std::string Module(const std::string& name) { return name + cli::kOwnModuleKind.ending; }

    std::string tool = ToolProgram().string();

    std::string pathOf(const std::string& name) const { return (folder.path() / PathFromUtf8(name)).string(); }

private:
    TemporaryFolder folder;
    TemporaryFolder printed;
};

}  // namespace quillon::test
