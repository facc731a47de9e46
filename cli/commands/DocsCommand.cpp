#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "cli/commands/Commands.h"
#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/docs/DocTopics.h"
#include "cli/docs/PageText.h"
#include "cli/system/Terminal.h"

namespace quillon::cli {

namespace {

constexpr const char* kToolTopic = "tool";  // the manual page of the program itself

PageLook LookOfTerminal() {
    constexpr std::size_t kWidest = 100;  // longer lines are hard to read
    constexpr std::size_t kNarrowest = 20;
    const char* const noColor = std::getenv("NO_COLOR");
    const std::size_t columns = TerminalColumns();
    PageLook look;
    look.hasStyles = columns != 0 && (!noColor || !*noColor);
    if (columns != 0) look.columns = std::clamp(columns, kNarrowest, kWidest);
    return look;
}

std::string ListOfTopics() {
    std::string text;
    for (const DocTopic& topic : DocTopics()) text += fmt::format("{:<18}{}\n", topic.name, topic.title);
    return text +
           "\nquillon docs TOPIC shows a page; quillon docs QL_renderShader, setup or render shows what is said about "
           "a\n"
           "function or a command.";
}

}  // namespace

int RunDocs(const DocsOptions& options) {
    if (options.topic.empty()) {
        PrintResult(ListOfTopics());
        return 0;
    }
    const auto found = FindDoc(options.topic);
    if (!found) {
        const std::string nearest = DidYouMean(options.topic, DocNames());
        throw WrongCommandLine(options.topic, "no such topic",
                               nearest.empty() ? "quillon docs lists them" : nearest + " quillon docs lists them");
    }
    std::string text;
    if (options.isManPage)
        text = options.topic == kToolTopic ? WriteManPage(*found, "quillon", 1)
                                           : WriteManPage(*found, "quillon-" + options.topic, 7);
    else
        text = WritePageText(*found, LookOfTerminal());
    text.pop_back();  // the line feed that printing adds
    PrintResult(text);
    return 0;
}

}  // namespace quillon::cli
