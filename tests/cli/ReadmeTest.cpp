// The effect in the first page for authors is one: its three files are taken from the page and rendered.

#include <fstream>
#include <sstream>

#include "ToolTest.h"
#include "support/BuiltFiles.h"

namespace quillon::test {

namespace {

// The code between the page's first fence of this language and its end.
std::string Fenced(const std::string& page, const std::string& language) {
    const std::string fence = "```" + language + "\n";
    const std::size_t start = page.find(fence);
    if (start == std::string::npos) return {};
    return page.substr(start + fence.size(), page.find("```", start + fence.size()) - start - fence.size());
}

using ReadmeExample = ToolTest;

}  // namespace

TEST_F(ReadmeExample, WarmsAPictureAsThePageSays) {
    std::ostringstream page;
    page << std::ifstream(SourceFolder() / "docs/first-effect.md").rdbuf();
    addEffect("tint", {{"fx.js", Fenced(page.str(), "js")},
                       {"tint.frag", Fenced(page.str(), "glsl")},
                       {"config.xml", Fenced(page.str(), "xml")}});
    writeSamples<std::uint8_t>("in.argb", {255, 200, 100, 50, 255, 0, 0, 0, 128, 10, 20, 30, 255, 255, 255, 255});
    const ToolRun rendered = run("render tint -i in.argb --size 2x2 --depth 8 -o out.argb --set amount=1");
    EXPECT_EQ(rendered.status, 0) << rendered.err;
    EXPECT_EQ(readSamples<std::uint8_t>("out.argb"),
              (std::vector<std::uint8_t>{255, 200, 80, 30, 255, 0, 0, 0, 128, 10, 16, 18, 255, 255, 204, 153}));
}

}  // namespace quillon::test
