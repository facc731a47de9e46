#include "entities/Context.h"

#include <utility>

#include "platform/FailFast.h"
#include "platform/Singletons.h"
#include "platform/WideText.h"

namespace quillon {

Context& Context::Instance() {
    static Context context;
    return context;
}

Context::~Context() {
    // The process is ending, and its GL driver with it.
    AbandonGLObjects();
    Clear();
}

void Context::Setup() {
    const auto add = [this]<class KindFactory>(std::unique_ptr<KindFactory> factory) {
        factories[KindFactory::kTag] = std::move(factory);
    };
    add(std::make_unique<Parameter::Factory>());
    add(std::make_unique<RenderTarget::Factory>());
    add(std::make_unique<Texture::Factory>());
    add(std::make_unique<Shader::Factory>());
    add(std::make_unique<Surface::Factory>());
    ++generation;
    current = 0;
    sequences.clear();  // of instances made before there was a script: slot 0 is the system's
    NewSequence();
    ready = true;
}

void Context::Clear() {
    if (!ready) return;
    sequences.clear();
    while (!factories.empty()) factories.erase(factories.begin());
    ready = false;
}

std::uint32_t Context::NewSequence() {
    auto sequence = std::make_unique<Sequence>(this);
    sequence->CopyFrom(*this);
    for (std::uint32_t slot = 0; slot < sequences.size(); ++slot) {
        if (sequences[slot]) continue;
        sequences[slot] = std::move(sequence);
        return slot;
    }
    sequences.push_back(std::move(sequence));
    return static_cast<std::uint32_t>(sequences.size() - 1);
}

void Context::DeleteSequence(std::uint32_t index) {
    if (index < sequences.size()) sequences[index].reset();
}

Sequence& Context::CurrentSequence() {
    const bool exists = current < sequences.size() && sequences[current];
    return exists ? *sequences[current] : ustl::Immortal<Sequence>(nullptr);
}

void Context::Release(std::uint32_t id) {
    const auto found = factories.find(TagOf(id));
    if (found == factories.end()) FailFast("an id that names no kind of entity was released");
    found->second->Erase(id);
}

std::vector<const Shader*> Context::faultyShaders() {
    std::vector<const Shader*> faulty;
    if (auto* factory = FactoryOf<Shader>()) {
        for (const auto& [id, shader] : factory->All())
            if (!shader.errorText.empty()) faulty.push_back(&shader);
    }
    return faulty;
}

std::string Context::ShaderErrors() {
    std::string errors;
    for (const Shader* shader : faultyShaders())
        errors += "Shader \"" + NarrowToBytes(shader->name) + "\"\n" + shader->errorText + "\n";
    return errors;
}

void Context::SetExtent(std::uint32_t compositionWidth, std::uint32_t compositionHeight, float pixelAspect) {
    width = compositionWidth;
    height = compositionHeight;
    scale = pixelAspect >= 0.01f && pixelAspect <= 4.0f ? pixelAspect : 1.0f;
}

}  // namespace quillon
