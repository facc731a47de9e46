// Planted once: a fetch from the package that says nothing of refused memory. The row found one fault itself: the end
// of a temporary folder needed memory.

#include "Ground.h"
#include "RefusedMemory.h"
#include "Tool.h"

namespace quillon::prove {

namespace {

// Half of what the effect in "fx" draws is from now on a picture of the package.
void AddDot(const Tool& tool) {
    tool.runWell("chart -o fx/dot.png --size 3x2");
    tool.write("fx/dotted.frag",
               "uniform sampler2D sInput0, sDot; void main() { gl_FragColor = 0.5 * (texture2D(sInput0, "
               "gl_TexCoord[0].st) + texture2D(sDot, gl_TexCoord[0].st)); }\n");
    tool.write("fx/fx.js", tool.read("fx/fx.js") +
                               "var dotted, dot, inner = setup, own = draw;\n"
                               "setup = function () { inner(); dotted = QL_initShader('dotted'); dot = "
                               "QL_initTexture('dot.png'); };\n"
                               "draw = function () { own(); var out = QL_getSequenceRT(); "
                               "QL_setShaderParamVal(dotted, 'sInput0', sizes[Object.keys(sizes)[0]][1]); "
                               "QL_setShaderParamVal(dotted, 'sDot', dot); QL_renderShader(dotted, out, true); };\n");
}

// A command of the tool whose result is always the same: what it prints, and a file "out" of any kind.
class RefusedCommand {
public:
    RefusedCommand(const Tool& ownTool, std::string commandLine)
        : tool(ownTool), arguments(std::move(commandLine)), before(tool.list()) {
        wanted = tool.runWell(arguments);
        wantedFile = takeFile();
        Require(wanted.size() + wantedFile.size() > 10, arguments + " hardly gives anything");
    }

    // With the allocation of this number refused, and with "+" for `further` all after it. Throws where it ends neither
    // with an error nor with the result. An error may also come when the whole file is there.
    bool endsWell(long nth, const char* further) const {
        const std::string what = arguments + ", allocation " + std::to_string(nth) + further;
        NowAt(what);
        const Tool::Run result =
            tool.run(arguments, "LD_PRELOAD='" QUILLON_REFUSED_MEMORY "' " + std::string(kRefusalVariable) + "=" +
                                    std::to_string(nth) + further);
        Require(result.status == 0 || result.status == 1,
                what + " ends the tool with " + std::to_string(result.status) + ": " + result.err);
        const std::string file = takeFile();
        if (result.status == 0)
            Require(result.out == wanted && file == wantedFile, what + " gives another result");
        else
            Require(!result.err.empty(), what + ": an error without a word");
        Require(file.empty() || file == wantedFile, what + " writes another file");
        Require(tool.list() == before, what + " leaves " + tool.list());
        return result.status == 0;
    }

private:
    std::string takeFile() const {
        std::string content;
        for (const char* name : {"out.argb", "out.so"}) {
            content += tool.read(name);
            std::filesystem::remove(tool.pathOf(name));
        }
        return content;
    }

    const Tool& tool;
    const std::string arguments;
    const std::string before;
    std::string wanted, wantedFile;
};

}  // namespace

std::string ToolMemory(bool isLong) {
    const Tool tool;
    tool.addEffectAndInput();
    AddDot(tool);
    int refused = 0, survived = 0;
    std::vector<std::string> commands = {"render fx -i in.argb --size 16x9 --depth 8 -o out.argb", "info fx --json"};
    if (isLong) commands.emplace_back("pack fx -o out.so");
    for (const std::string& command : commands) {
        const RefusedCommand trial(tool, command);
        long last = 1000;  // where not one allocation is left to refuse
        while (!trial.endsWell(last, "+")) last += 500;
        for (const char* further : {"", "+"})
            for (const long nth : Places(last, isLong ? 3000 : 75))
                (trial.endsWell(nth, further) ? survived : refused) += 1;
    }
    Require(refused > 100, "hardly anything is refused");
    return std::to_string(refused) + " runs end with an error, " + std::to_string(survived) + " with the result";
}

}  // namespace quillon::prove
