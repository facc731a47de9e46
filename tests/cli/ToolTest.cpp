#include "ToolTest.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "RunCommand.h"
#include "platform/Utf8Path.h"

namespace quillon::test {

namespace {

std::string ContentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

}  // namespace

ToolRun ToolTest::run(const std::string& arguments, const std::string& environment) const {
    const int status = RunCommand(folder.path(), printed.path(), environment, tool, arguments);
    return {status, ContentOf(printed.path() / "out"), ContentOf(printed.path() / "err")};
}

void ToolTest::addEffect(const std::string& name, const Files& files) const {
    std::filesystem::create_directories(folder.path() / PathFromUtf8(name));
    writeFile(name + "/config.xml", kConfig);
    for (const auto& [fileName, content] : files) writeFile(name + "/" + fileName, content);
}

void ToolTest::addCopyEffect() const {
    addEffect("copy", {{"fx.js", CopyScript(/*flip=*/true)}, {"copy.frag", kCopyFragment}});
}

void ToolTest::writeFile(const std::string& name, const std::string& content) const {
    std::ofstream(folder.path() / PathFromUtf8(name), std::ios::binary) << content;
}

std::string ToolTest::readFile(const std::string& name) const {
    return ContentOf(folder.path() / PathFromUtf8(name));
}

std::vector<std::string> ToolTest::list() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace quillon::test
