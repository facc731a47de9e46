#pragma once

#include <string>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What an import has to say about one file, in the order in which it was found.
class ImportFindings {
public:
    explicit ImportFindings(std::string file) : path(std::move(file)) {}

    // What cannot be carried over at all: the file is refused. Lines count from 1; 0 is the file as a whole.
    void refuse(int line, const std::string& text, Diagnostic::Kind kind = Diagnostic::Kind::shader) {
        add(line, text, kind, Diagnostic::Severity::error);
        refused = true;
    }
    // What is carried over in another form.
    void warn(int line, const std::string& text, Diagnostic::Kind kind = Diagnostic::Kind::shader) {
        add(line, text, kind, Diagnostic::Severity::warning);
    }

    bool isRefused() const { return refused; }
    const Diagnostics& all() const { return found; }
    const std::string& file() const { return path; }

private:
    // The same words about one line are said once.
    void add(int line, const std::string& text, Diagnostic::Kind kind, Diagnostic::Severity severity) {
        const Diagnostic diagnostic{.path = path, .line = line, .severity = severity, .text = text, .kind = kind};
        for (const Diagnostic& earlier : found) {
            if (earlier == diagnostic) return;
        }
        found.push_back(diagnostic);
    }

    std::string path;
    Diagnostics found;
    bool refused = false;
};

}  // namespace quillon::cli
