// Lookups and creation: how ids become entities.

#include "entities/Context.h"
#include "platform/Singletons.h"

namespace quillon {

template <class Kind>
typename Kind::Factory* Context::FactoryOf() {
    const auto found = factories.find(Kind::Factory::kTag);
    return found != factories.end() ? static_cast<typename Kind::Factory*>(found->second.get()) : nullptr;
}

template <class Kind>
Kind* Context::FindIn(std::uint32_t id) {
    auto* factory = FactoryOf<Kind>();
    return factory ? factory->Find(id) : nullptr;
}

template <class Kind>
Kind& Context::FindOrNull(std::uint32_t id) {
    Kind* found = FindIn<Kind>(id);
    return found ? *found : ustl::Immortal<Kind>();
}

// Makes an entity of the kind and lets `configure` see it. Gives its id, whatever came of the configuration.
template <class Kind, class Configure>
std::uint32_t Context::New(Configure configure) {
    auto* factory = FactoryOf<Kind>();
    if (!factory) return 0;
    const std::uint32_t id = factory->Allocate();
    configure(*factory->Find(id));
    return id;
}

std::uint32_t Context::Count() {
    auto* factory = FactoryOf<Parameter>();
    return factory ? static_cast<std::uint32_t>(factory->All().size()) : 0;
}

Parameter& Context::At(std::uint32_t index) {
    const auto position = static_cast<std::int32_t>(index);
    auto* factory = FactoryOf<Parameter>();
    Parameter* found = factory && position >= 0 ? factory->At(index) : nullptr;
    return found ? *found : Null();
}

Parameter& Context::FindParameter(std::uint32_t id) {
    Parameter& copy = CurrentSequence().Find(id);
    if (copy.id != 0) return copy;
    Parameter* declared = FindIn<Parameter>(id);
    return declared ? *declared : Null();
}

Shader& Context::FindShader(std::uint32_t id) {
    return FindOrNull<Shader>(id);
}

RenderTarget& Context::FindRenderTarget(std::uint32_t id) {
    return FindOrNull<RenderTarget>(id);
}

Texture& Context::FindTexture(std::uint32_t id) {
    return FindOrNull<Texture>(id);
}

Surface& Context::FindSurface(std::uint32_t id) {
    return FindOrNull<Surface>(id);
}

std::uint32_t Context::NewParameter(const std::string& uniformName, std::uint32_t kind, const std::string& label) {
    return New<Parameter>([&](Parameter& parameter) {
        parameter.uniformName = uniformName;
        parameter.kind = kind;
        parameter.label = label;
        parameter.min[0] = -100.0f;
        parameter.max[0] = 100.0f;
        parameter.flags = 0;
        parameter.choices = "0|1|2|3|4|5|6|7|8|9";
        parameter.choiceCount = 10;
    });
}

std::uint32_t Context::NewShader(const std::string& name, const std::string& source) {
    return New<Shader>([&](Shader& shader) { shader.initFromName(name, source, basePath, *this); });
}

std::uint32_t Context::NewTexture(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits) {
    return New<Texture>([&](Texture& texture) { texture.initTexture(columns, rows, bits, /*argbOrdered=*/true); });
}

std::uint32_t Context::NewTextureFromFile(const std::string& fileName) {
    return New<Texture>([&](Texture& texture) { texture.loadImage(fileName); });
}

std::uint32_t Context::NewRenderTarget(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits) {
    return New<RenderTarget>([&](RenderTarget& target) { target.initTarget(columns, rows, bits); });
}

std::uint32_t Context::NewSurface(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits) {
    return New<Surface>([&](Surface& surface) { surface.init(columns, rows, bits, /*argbOrdered=*/true); });
}

template Shader::Factory* Context::FactoryOf<Shader>();

}  // namespace quillon
