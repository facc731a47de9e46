#include "Tool.h"

#include <fstream>
#include <set>
#include <sstream>

#include "Effects.h"
#include "Ground.h"
#include "RunCommand.h"

namespace quillon::prove {

namespace {

std::string ContentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

}  // namespace

Tool::Run Tool::run(const std::string& arguments, const std::string& environment) const {
    const int status =
        test::RunCommand(folder.path(), printed.path(), environment, test::ToolProgram().string(), arguments);
    return {status, ContentOf(printed.path() / "out"), ContentOf(printed.path() / "err")};
}

std::string Tool::runWell(const std::string& arguments, const std::string& environment) const {
    const Run result = run(arguments, environment);
    Require(result.status == 0,
            "quillon " + arguments + " ends with " + std::to_string(result.status) + ": " + result.err);
    return result.out;
}

void Tool::addEffectAndInput() const {
    std::filesystem::create_directory(pathOf("fx"));
    for (const auto& [name, content] : ThreePasses()) write("fx/" + name, content);
    const test::Bytes pixels = Noise(16, 9, 8, 4);
    write("in.argb", {reinterpret_cast<const char*>(pixels.data()), pixels.size()});
}

void Tool::write(const std::string& name, const std::string& content) const {
    std::ofstream(pathOf(name), std::ios::binary) << content;
}

std::string Tool::read(const std::string& name) const {
    return ContentOf(pathOf(name));
}

std::string Tool::list() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
        names.insert(entry.path().lexically_relative(folder.path()));
    std::string list;
    for (const std::string& name : names) list += name + " ";
    return list;
}

}  // namespace quillon::prove
