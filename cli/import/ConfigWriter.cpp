#include "cli/import/ConfigWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kLongestName = 31;    // bytes of a name in hosts
constexpr std::size_t kLongestAbout = 200;  // of the About message, which has 256 with what the engine adds
constexpr std::size_t kLongestMatchName = 28;

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else
            escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return escaped;
}

bool IsPlain(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Letters and digits: what hosts and projects find the effect by.
std::string PlainName(const std::string& name) {
    std::string plain;
    std::ranges::copy_if(name, std::back_inserter(plain), IsPlain);
    return plain.empty() ? "Effect" : plain.substr(0, kLongestMatchName);
}

}  // namespace

std::string CutEffectName(const std::string& name) {
    return CutText(name, kLongestName);
}

bool HasPlainName(const std::string& name) {
    return std::ranges::any_of(name, IsPlain);
}

std::string WriteIdentity(const std::string& name) {
    const std::string plain = PlainName(name);
    std::string text = fmt::format("<FXNAME>{}</FXNAME>\n<AGEP_ID>{}</AGEP_ID>\n", Escaped(CutEffectName(name)), plain);
    if (plain != name) text += fmt::format("<MATCH_NAME>QLV{}</MATCH_NAME>\n", plain);
    return text;
}

std::string WriteConfig(const EffectPlan& plan) {
    std::string about = plan.name + (plan.about.empty() ? "" : ": " + plan.about);
    if (!plan.credit.empty()) about += (about.ends_with('.') ? " " : ". ") + plan.credit;
    std::string text = fmt::format(
        "<MAJOR_VERSION>{}</MAJOR_VERSION>\n"
        "<MINOR_VERSION>{}</MINOR_VERSION>\n"
        "<BUILD_VERSION>0</BUILD_VERSION>\n"
        "<STAGE_VERSION>3</STAGE_VERSION>\n"
        "<FLAGS>33554464</FLAGS>\n"
        "<FLAGS2>5120</FLAGS2>\n"
        "<ABOUT>{}</ABOUT>\n",
        plan.majorVersion, plan.minorVersion, Escaped(CutText(about, kLongestAbout)));
    text += WriteIdentity(plan.name);
    if (!plan.category.empty()) text += fmt::format("<CATEGORY>{}</CATEGORY>\n", Escaped(plan.category));
    return text;
}

}  // namespace quillon::cli
