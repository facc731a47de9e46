#include "cli/effect/EffectFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/effect/EffectDescription.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/ShownTarget.h"
#include "cli/effect/TemplateModule.h"
#include "cli/system/ModuleKind.h"
#include "entities/Context.h"
#include "frei0r/Listing.h"
#include "gpu/FragmentRewriting.h"
#include "package/ConfigDocument.h"
#include "package/EffectVersion.h"
#include "packer/PiPL.h"
#include "platform/WideText.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kStages[] = {"development", "alpha", "beta", "release"};
constexpr const char* kPluginTypes[] = {"filter", "source", "mixer of two inputs"};

// A switch feeds an int as well as a bool.
constexpr std::pair<UniformType, const char*> kUniformTypes[] = {
    {UniformType::float1, "float"}, {UniformType::vec2, "vec2"}, {UniformType::vec3, "vec3"},
    {UniformType::vec4, "vec4"},    {UniformType::int1, "int"},  {UniformType::bool1, "int"},
};

const char* UniformTypeOf(const Parameter& uniform) {
    const ControlKind& kind = ControlKindOf(uniform.kind);
    if (kind.scriptForm == ScriptForm::entity) return "sampler2D";
    for (const auto& [type, name] : kUniformTypes)
        if (type == kind.uniformType) return name;
    return "unknown";
}

Json DescribePlugin(const frei0r::Listing& listing) {
    Json controls = Json::array();
    for (const frei0r::ListedControl& control : listing.controls)
        controls.push_back({{"name", control.name}, {"meaning", control.explanation}});
    return {{"type", kPluginTypes[static_cast<int>(listing.type)]}, {"name", listing.name}, {"controls", controls}};
}

std::string FeederOf(const std::string& uniform, const std::vector<Parameter>& declarations,
                     const std::string& script) {
    for (const Parameter& control : declarations) {
        if (control.uniformName == uniform) return fmt::format("control {}", uniform);
    }
    if (uniform.starts_with("Texture") && uniform.ends_with("Params")) return "engine";
    for (const char quote : {'\'', '"'}) {
        if (script.find(quote + uniform + quote) != std::string::npos) return "script";
    }
    return "nothing";
}

// What `describe` gives for the entities of a kind. The engine gives the lowest free id first, so effects' entities are
// among the first; one that is not live is found as a null object, for which `describe` gives null.
template <class Kind, class Describe>
Json DescribeAll(Kind& (Context::*find)(std::uint32_t), Describe describe) {
    constexpr std::uint32_t kMostEntities = 4096;
    Json list = Json::array();
    for (std::uint32_t id = Kind::Factory::kTag + 1; id <= Kind::Factory::kTag + kMostEntities; ++id) {
        Json facts = describe((Context::Instance().*find)(id));
        if (!facts.is_null()) list.push_back(std::move(facts));
    }
    return list;
}

Json DescribeExtent(const Texture& texture) {
    if (texture.width == 0 || texture.height == 0) return {};
    return {{"width", texture.width}, {"height", texture.height}, {"bits", texture.bitDepth}};
}

// By the number and the variable that --show takes.
Json DescribeTargets() {
    Json list = Json::array();
    for (const ListedTarget& target : ListTargets()) {
        Json facts = {{"index", list.size() + 1}, {"variable", target.variable}};
        facts.update(DescribeExtent(Context::Instance().FindRenderTarget(target.id)));
        list.push_back(std::move(facts));
    }
    return list;
}

Json DescribeShader(const Shader& shader, const std::vector<Parameter>& declarations, const std::string& script) {
    if (!shader.isBuilt()) return {};
    Json uniforms = Json::array();
    for (const Parameter& uniform : shader.parameters)
        uniforms.push_back({{"name", uniform.uniformName},
                            {"type", UniformTypeOf(uniform)},
                            {"fed_by", FeederOf(uniform.uniformName, declarations, script)}});
    const std::string path = NarrowToBytes(shader.path);
    return {{"name", NarrowToBytes(shader.name)},
            {"file", path.substr(path.find_last_of("\\/") + 1)},
            {"uniforms", uniforms}};
}

}  // namespace

Json DescribeFiles(const EffectSource& source) {
    const ConfigDocument config(source.textOf("config.xml"));
    const EffectVersion version = EffectVersion::FromConfig(config);
    const EffectIdentity identity = IdentityOf(source);
    const auto listing = source.isModule ? frei0r::ReadListingOf(source.path) : std::nullopt;
    Json facts = {{"path", source.path.generic_string()},
                  {"kind", listing           ? "frei0r plug-in"
                           : source.isModule ? "effect module"
                                             : "folder"}};
    if (const ModuleKind* const kind = ModuleKindOf(source.path); kind && source.isModule) {
        facts["system"] = kind->system;
        if (const auto isOwn = IsOfTemplate(source.path, listing ? kPluginTemplate : kEffectTemplate))
            facts["template"] = *isOwn ? "this tool's" : "another version's, or damaged";
    }
    facts.update({{"name", identity.name},
                  {"category", identity.category},
                  {"match_name", identity.matchName},
                  {"about", ConfigText(config, L"ABOUT")},
                  {"version", fmt::format("{}.{}.{}", version.major(), version.minor(), version.build())},
                  {"stage", kStages[version.stage()]},
                  {"flags", identity.outFlags},
                  {"flags2", identity.outFlags2}});
    if (listing) facts["plugin"] = DescribePlugin(*listing);
    Json files = Json::array();
    for (const PackageFile& file : source.files) files.push_back({{"name", file.name}, {"bytes", file.bytes.size()}});
    facts["files"] = files;
    return facts;
}

Json DescribeEngine(const std::string& script) {
    const std::vector<Parameter> declarations = LinkedEngine::Declarations();
    return {
        {"shaders", DescribeAll(&Context::FindShader,
                                [&](const Shader& shader) { return DescribeShader(shader, declarations, script); })},
        {"targets", DescribeTargets()},
        {"textures", DescribeAll(&Context::FindTexture, DescribeExtent)}};
}

std::string RewrittenShader(std::string_view fragment) {
    return Shader::kPreamble + RewriteFragment(fragment).text;
}

}  // namespace quillon::cli
