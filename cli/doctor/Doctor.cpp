#include "cli/doctor/Doctor.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <thread>

#include "cli/effect/TemplateModule.h"
#include "cli/system/ChildProcess.h"
#include "cli/system/Desktop.h"
#include "cli/system/ModuleKind.h"
#include "cli/system/System.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;
using State = MachinePart::State;

#ifdef _WIN32
constexpr const char* kMovieRemedy = "install it, as by: winget install ffmpeg, and open a new terminal";
#else
constexpr const char* kMovieRemedy = "install it (Debian: apt install ffmpeg) so that it is in PATH";
#endif

// The first line that a program prints, without its end; nothing when it cannot be started.
std::optional<std::string> FirstLineOf(const std::string& program, const std::string& argument) {
    constexpr std::size_t kLongest = 200;
    try {
        ChildProcess child(program, {argument}, ChildProcess::Pipe::fromChild);
        std::array<std::byte, 4096> bytes;
        std::string text, chunk;
        while (const std::size_t count = child.read(bytes)) {
            text.append(reinterpret_cast<const char*>(bytes.data()), count);
            if (count < bytes.size()) break;
        }
        child.wait();
        return text.substr(0, std::min(text.find_first_of("\r\n"), kLongest));
    } catch (const std::system_error&) {
        return {};
    }
}

MachinePart ExamineTemplate(const ModuleKind& kind, const char* name, const char* use, bool isNeeded) {
    const fs::path path = ProgramFile().parent_path().parent_path() / "lib" / (std::string(name) + kind.ending);
    MachinePart part{.name = fmt::format("{} for {}", use, kind.system), .text = path.string()};
    std::error_code ignored;
    if (fs::exists(path, ignored)) return part;
    part.state = isNeeded ? State::broken : State::absent;
    part.text += ": not there, nothing can be packed for that";
    part.remedy = "take that file from a package or a build of the same version; keep bin and lib beside each other";
    return part;
}

MachinePart ExamineProgram(const std::string& program) {
    MachinePart part{.name = program};
    if (const auto line = FirstLineOf(program, "-version"); line && !line->empty()) {
        part.text = *line;
        return part;
    }
    part.state = State::absent;
    part.text = "not in PATH: movies cannot be read or written, pictures can";
    part.remedy = kMovieRemedy;
    return part;
}

MachinePart ExamineBrowser() {
    MachinePart part{.name = "browser", .text = "opens by itself for preview"};
    if (HasBrowser()) return part;
    part.state = State::absent;
    part.text = "preview cannot open one here";
    part.remedy = "open the address that it prints, also from another machine: quillon preview --help says how";
    return part;
}

MachinePart ExamineTemporaries() {
    constexpr std::uintmax_t kEnough = std::uintmax_t{1} << 30;
    MachinePart part{.name = "temporary files"};
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    const fs::space_info space = error ? fs::space_info{} : fs::space(folder, error);
    part.text =
        error ? "there is no folder for them" : fmt::format("{}, {} MiB free", folder.string(), space.available >> 20);
    if (!error && space.available >= kEnough) return part;
    part.state = error ? State::broken : State::absent;
    part.remedy = fmt::format("name a folder with more room in {}", kTemporaryVariable);
    return part;
}

}  // namespace

std::vector<MachinePart> ExamineMachine() {
    std::vector<MachinePart> parts = {ExamineGraphics()};
    for (const ModuleKind& kind : kModuleKinds)
        parts.push_back(ExamineTemplate(kind, kEffectTemplate, "modules", &kind == &kOwnModuleKind));
    parts.push_back(ExamineTemplate(kModuleKinds[0], kPluginTemplate, "frei0r plug-ins", false));
    for (const char* program : {"ffmpeg", "ffprobe"}) parts.push_back(ExamineProgram(program));
    parts.push_back(ExamineBrowser());
    parts.push_back(ExamineTemporaries());
    parts.push_back({.name = "processors", .text = std::to_string(std::thread::hardware_concurrency())});
    return parts;
}

}  // namespace quillon::cli
