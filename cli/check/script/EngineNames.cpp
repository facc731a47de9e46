#include "cli/check/script/EngineNames.h"

#include <duktape.h>

#include <memory>
#include <new>
#include <span>
#include <sstream>

#include "script/Natives.h"
#include "script/Prelude.h"

namespace quillon::cli {

namespace {

// The names that an expression gives, an array.
std::set<std::string, std::less<>> ListFrom(duk_context* heap, const std::string& expression) {
    if (duk_peval_string(heap, ("(" + expression + ").join(' ')").c_str()) != 0) throw std::bad_alloc();
    std::istringstream words(duk_safe_to_string(heap, -1));
    duk_pop(heap);
    std::set<std::string, std::less<>> list;
    for (std::string word; words >> word;) list.insert(word);
    return list;
}

}  // namespace

const EngineNames& EngineNames::Instance() {
    static const EngineNames kNames;
    return kNames;
}

EngineNames::EngineNames() {
    const std::unique_ptr<duk_context, decltype(&duk_destroy_heap)> heap(duk_create_heap_default(), duk_destroy_heap);
    if (!heap) throw std::bad_alloc();
    const auto ownNames = ListFrom(heap.get(), "Object.getOwnPropertyNames(this)");
    if (duk_peval_string(heap.get(), Prelude().c_str()) != 0) throw std::bad_alloc();
    duk_pop(heap.get());
    names = ListFrom(heap.get(), "Object.getOwnPropertyNames(this)");
    inherited = ListFrom(heap.get(), "Object.getOwnPropertyNames(Object.prototype)");
    for (const std::string& name : names)
        if (!ownNames.contains(name)) constants[name] = ListFrom(heap.get(), "Object.keys(" + name + ")");
    for (const auto natives : {ParameterNatives(), RenderTargetNatives(), ShaderNatives(), TextureNatives(),
                               SurfaceNatives(), HostNatives()}) {
        for (const Native& native : natives) functions[native.name] = &native;
    }
    for (const auto& [name, native] : functions) names.insert(name);
}

const Native* EngineNames::findFunction(std::string_view name) const {
    const auto found = functions.find(name);
    return found == functions.end() ? nullptr : found->second;
}

}  // namespace quillon::cli
