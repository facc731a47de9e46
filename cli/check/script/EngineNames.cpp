#include "cli/check/script/EngineNames.h"

#include <duktape.h>
#include <fmt/format.h>

#include <memory>
#include <new>
#include <span>
#include <sstream>
#include <utility>

#include "script/Natives.h"
#include "script/Prelude.h"

namespace quillon::cli {

namespace {

// The members of an object and of those that it inherits from and, where asked for, of all that can be reached from it.
constexpr const char* kCollect = R"js(function (start, goesOn) {
    var seen = [], names = {}, waiting = [start];
    function add(value) {
        if (value !== null && (typeof value === 'object' || typeof value === 'function')) waiting.push(value);
    }
    while (waiting.length > 0) {
        var object = waiting.pop();
        if (seen.indexOf(object) >= 0) continue;
        seen.push(object);
        Object.getOwnPropertyNames(object).forEach(function (name) {
            names[name] = true;
            if (goesOn) add(Object.getOwnPropertyDescriptor(object, name).value);
        });
        add(Object.getPrototypeOf(object));
    }
    return Object.keys(names);
})js";

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
    for (const std::string& name : ownNames)
        if (auto members = ListFrom(heap.get(), fmt::format("({})(Object({}), false)", kCollect, name));
            !members.empty())
            roots[name] = std::move(members);
    reachable =
        ListFrom(heap.get(), fmt::format("({})([this, (function () {{ return arguments; }})()], true)", kCollect));
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
