#include "cli/diagnostics/PrintLine.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

namespace {

// One call: a terminal shows what comes at once, and a letter's bytes must not come apart.
bool Print(std::FILE* file, std::string_view text) {
    const std::string line = std::string(text) + "\n";
    return std::fwrite(line.data(), 1, line.size(), file) == line.size() && std::fflush(file) == 0;
}

}  // namespace

void PrintResult(std::string_view text) {
    errno = 0;
    if (!Print(stdout, text))
        throw Fault("standard output", std::string("cannot be written: ") + std::strerror(errno),
                    "send it where there is room");
}

void PrintWords(std::string_view text) {
    Print(stderr, text);
}

void PrintWordsOverBar(std::string_view text) {
    Print(stderr, (isatty(STDERR_FILENO) ? "\r\x1b[K" : "") + std::string(text));
}

}  // namespace quillon::cli
