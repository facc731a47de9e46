#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "cli/check/watch/CallCheck.h"
#include "parameter/Parameter.h"

namespace quillon::cli {

// The controls that setup() declares, where hosts would drop or bend what the script says. Looked at when setup() has
// ended; the findings are at the line that declares the control. Where several are declared by one line, as of a helper
// function, the line is that of the helper's caller.
class DeclarationChecks : public CallCheck {
public:
    using CallCheck::CallCheck;
    void entryEnds(bool hasFailed) override;
    void before(const NativeCall& call) override;
    void after(const NativeCall& call) override;

private:
    // Where a control was declared, from the innermost call outward; 0 after the outermost.
    using Lines = std::array<int, 4>;
    struct Declaration {
        std::uint32_t id = 0;
        Lines lines = {};
        bool hasRange = false;
        bool hasPrecision = false;
    };

    int lineOf(const Declaration& declaration) const;
    void add(const char* rule, const Declaration& declaration, const std::string& text, std::string remedy = {});
    void checkOne(const Declaration& declaration, const Parameter& control);
    void checkSlider(const Declaration& declaration, const Parameter& control);
    void checkPopup(const Declaration& declaration, const Parameter& control);
    void checkPoint(const Declaration& declaration, const Parameter& control);
    void checkColor(const Declaration& declaration, const Parameter& control);
    void checkNames();
    void checkGroups();
    void checkValue(const NativeCall& call, const Parameter& control) const;

    std::vector<Declaration> declarations;
};

}  // namespace quillon::cli
