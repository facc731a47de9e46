#include "PreviewTest.h"

#include "platform/LittleEndian.h"

namespace quillon::test {

namespace {

constexpr const char* kFragment =
    "uniform sampler2D picture;\n"
    "uniform float amount;\n"
    "void main() {\n"
    "  vec4 color = texture2D(picture, gl_TexCoord[0].st);\n"
    "  gl_FragColor = vec4(color.rgb * amount, color.a);\n"
    "}\n";

}  // namespace

PreviewTest::PreviewTest() {
    addEffect("fx", {{"fx.js", Script()}, {"tint.frag", kFragment}});
    writeSamples<std::uint8_t>("raw.argb", {255, 200, 100, 50, 255, 40, 80, 120});
    addCopyEffect();
    EXPECT_EQ(run("render copy -i raw.argb --size 2x1 --depth 8 -o in.png").status, 0);
}

std::string PreviewTest::Script(const std::string& inDraw) {
    return "var amount, tint;\n"
           "function setup() {\n"
           "  amount = QL_initParam('amount', QL_Type.FLOAT, 'Amount');\n"
           "  QL_setParamMinMax(amount, 0, 1);\n"
           "  QL_setParamValue(amount, 1);\n"
           "  tint = QL_initShader('tint');\n"
           "}\n"
           "function draw() {\n" +
           inDraw +
           "  QL_setShaderParamVal(tint, 'picture', QL_getSequenceTexture());\n"
           "  QL_setShaderParam(tint, amount);\n"
           "  QL_renderShader(tint, QL_getSequenceRT(), true);\n"
           "}\n";
}

void PreviewTest::start(const std::string& more) {
    std::vector<std::string> arguments = {"preview", pathOf("fx"), "-i", pathOf("in.png"), "--no-browser"};
    std::istringstream words(more);
    for (std::string word; words >> word;) arguments.push_back(word);
    preview = std::make_unique<cli::ChildProcess>(tool, arguments, cli::ChildProcess::Pipe::fromChild);
    std::string line;
    for (std::byte letter; preview->read({&letter, 1}) == 1 && letter != std::byte{'\n'};)
        line += static_cast<char>(letter);
    constexpr std::size_t kScheme = 7;  // "http://"
    ASSERT_GT(line.size(), kScheme);
    const std::size_t slash = line.find('/', kScheme);
    host = line.substr(kScheme, slash - kScheme);
    root = line.substr(slash);
}

std::unique_ptr<httplib::Client> PreviewTest::newClient() const {
    auto client = std::make_unique<httplib::Client>("http://" + host);
    client->set_read_timeout(30);
    return client;
}

nlohmann::json PreviewTest::ViewOf(const std::string& amount) {
    return {
        {"frame", 0}, {"depth", 8}, {"fps", 25},      {"values", {{"amount", {{"kind", "FLOAT"}, {"text", amount}}}}},
        {"show", ""}, {"host", 0},  {"downsample", 1}};
}

PreviewFrame PreviewTest::frame(const std::string& amount) {
    const auto answer = newClient()->Post(root + "frame", ViewOf(amount).dump(), "application/json");
    if (!answer || answer->status != 200) return {};
    const std::string& body = answer->body;
    const auto size = LoadLittle<std::uint32_t>(std::as_bytes(std::span(body)).first<4>(), 0);
    return {nlohmann::json::parse(body.substr(4, size)), body.substr(4 + size)};
}

nlohmann::json PreviewTest::waitForState(const std::function<bool(const nlohmann::json&)>& isRight) {
    nlohmann::json found;
    std::string stream;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    newClient()->Get(root + "events", [&](const char* data, std::size_t size) {
        stream.append(data, size);
        for (std::size_t at = 0; (at = stream.find("\n\n")) != std::string::npos; stream.erase(0, at + 2)) {
            if (!stream.starts_with("data: ")) continue;
            found = nlohmann::json::parse(stream.substr(6, at - 6));
            if (isRight(found)) return false;
            found = nullptr;
        }
        return std::chrono::steady_clock::now() < end;
    });
    return found;
}

}  // namespace quillon::test
