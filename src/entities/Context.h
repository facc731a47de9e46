#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "entities/Factories.h"
#include "entities/Sequence.h"
#include "parameter/ParametersHolder.h"

namespace quillon {

// The process-wide root of all entities and of the state of each effect instance. All instances share one script heap
// and one set of entities, and take turns; `current` says whose turn it is, and is set before every entry into the
// script. As a ParametersHolder it lists the declared parameters.
//
// No locks: calls come one at a time under the effect's entry mutex. Whatever makes, fills or ends a texture, target
// or shader needs the GL lock.
class Context final : public ParametersHolder {
public:
    // The one object, built on first use in a thread-safe way.
    static Context& Instance();
    virtual ~Context();

    // Makes the factories and slot 0, which is the system's own Sequence and becomes current. On a cleared Context.
    void Setup();
    // Ends all Sequences, then all entities. `current` stays. Nothing when there is nothing to clear.
    void Clear();

    // Declared parameters, in ascending id order; `index` is taken as signed.
    std::uint32_t Count() override;
    Parameter& At(std::uint32_t index) override;

    // The entity of this id, or the null object of the kind, which holds no GL object and no pixels. Never fails;
    // nothing may be written to a null object. FindParameter prefers the copy of the current Sequence.
    Parameter& FindParameter(std::uint32_t id);
    Shader& FindShader(std::uint32_t id);
    RenderTarget& FindRenderTarget(std::uint32_t id);
    Texture& FindTexture(std::uint32_t id);
    Surface& FindSurface(std::uint32_t id);

    // Each gives the id of a new entity, also when configuring it failed; 0 only while the Context is cleared.
    std::uint32_t NewParameter(const std::string& uniformName, std::uint32_t kind, const std::string& label);
    std::uint32_t NewShader(const std::string& name, const std::string& source);
    std::uint32_t NewTexture(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits);
    std::uint32_t NewTextureFromFile(const std::string& fileName);
    std::uint32_t NewRenderTarget(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits);
    std::uint32_t NewSurface(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits);

    // Ends one entity of any kind. A tag without a factory ends the process.
    void Release(std::uint32_t id);

    // A new Sequence with copies of the declared parameters, in the lowest free slot.
    std::uint32_t NewSequence();
    // Ends the Sequence of a slot; its target and texture stay. A slot without one is ignored. Touches no GL.
    void DeleteSequence(std::uint32_t index);
    // The Sequence in slot `current`, or one that does not exist().
    Sequence& CurrentSequence();

    // The shaders with a fault, in id order; each lives until it is released or the Context is cleared.
    std::vector<const Shader*> faultyShaders();
    // The errors of the same shaders as one text, each under a line with the shader's name; empty when all is well.
    std::string ShaderErrors();

    // A pixel aspect outside 0.01 to 4.0, or none, is stored as 1.0.
    void SetExtent(std::uint32_t compositionWidth, std::uint32_t compositionHeight, float pixelAspect);

    std::uint32_t current = 0;     // slot
    std::uint32_t generation = 0;  // counts the calls of Setup: slots of an earlier one name nothing now
    std::wstring basePath;         // in front of shader file names; stays empty
    std::uint32_t width = 0;       // of the composition, in pixels
    std::uint32_t height = 0;
    float scale = 1.0f;  // its pixel aspect

private:
    Context() = default;
    template <class Kind>
    typename Kind::Factory* FactoryOf();
    template <class Kind>
    Kind* FindIn(std::uint32_t id);
    template <class Kind>
    Kind& FindOrNull(std::uint32_t id);
    template <class Kind, class Configure>
    std::uint32_t New(Configure configure);

    std::map<std::uint32_t, std::unique_ptr<Factory>> factories;  // by tag, and ended in its order
    std::vector<std::unique_ptr<Sequence>> sequences;             // slots; a freed one holds null
    bool ready = false;
};

}  // namespace quillon
