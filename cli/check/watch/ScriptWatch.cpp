#include "cli/check/watch/ScriptWatch.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <string_view>
#include <utility>
#include <vector>

#include "cli/check/watch/DeclarationChecks.h"
#include "cli/check/watch/FlipChecks.h"
#include "cli/check/watch/IdChecks.h"
#include "cli/check/watch/MakingChecks.h"
#include "cli/check/watch/PassChecks.h"
#include "cli/check/watch/UniformChecks.h"
#include "cli/diagnostics/Rules.h"
#include "entities/Context.h"
#include "gpu/Shader.h"
#include "platform/WideText.h"
#include "script/NativeCalls.h"
#include "script/ScriptObserver.h"
#include "script/Scripting.h"

namespace quillon::cli {

namespace {

Entry EntryOf(std::string_view evaluated) {
    constexpr std::pair<std::string_view, Entry> kEntries[] = {
        {"preRender(", Entry::preRender}, {"draw(", Entry::draw}, {"updateUIFlags(", Entry::updateUIFlags}};
    for (const auto& [beginning, entry] : kEntries)
        if (evaluated.starts_with(beginning)) return entry;
    return Entry::setup;
}

}  // namespace

class ScriptWatch::Watcher final : public ScriptObserver, public NativeListener {
public:
    Watcher(const EffectSource& source, PassListener passListener)
        : run{Findings(source), {}}, script(source.pathOf("fx.js")), onPass(std::move(passListener)) {
        checks.push_back(std::make_unique<IdChecks>(run));
        checks.push_back(std::make_unique<UniformChecks>(run));
        checks.push_back(std::make_unique<PassChecks>(run));
        checks.push_back(std::make_unique<FlipChecks>(run));
        checks.push_back(std::make_unique<MakingChecks>(run, source));
        checks.push_back(std::make_unique<DeclarationChecks>(run));
        Scripting::AddObserver(*this);
    }
    ~Watcher() {
        Scripting::RemoveObserver(*this);
        ForgetNativeListener();
    }

    Diagnostics take() {
        for (const auto& check : checks) check->finish();
        return run.findings.take();
    }

    void heapOpened(duk_hthread* ctx) override { TellOfNativeCalls(ctx, *this); }

    void evaluationBegins(const char* text) override {
        run.entry = EntryOf(text);
        run.entities.enter(run.entry == Entry::draw || run.entry == Entry::preRender);
        if (run.entry == Entry::draw) run.entities.countFrame();
        for (const auto& check : checks) check->entryBegins();
    }

    void evaluationEnds(bool hasFailed) override {
        for (const auto& check : checks) check->entryEnds(hasFailed);
    }

    // The checks see the entities as they were before the call.
    void before(const NativeCall& call) override {
        for (const auto& check : checks) check->before(call);
        run.entities.before(call);
        if (onPass && call.name() == "QL_renderShader") {
            const Shader& shader = Context::Instance().FindShader(call.idOf(0).value_or(0));
            onPass({Found("render/never-ends", script, run.findings.placeOf(call).line, 0,
                          fmt::format("shader \"{}\"", NarrowToBytes(shader.name)))});
        }
    }

    void after(const NativeCall& call) override {
        if (onPass && call.name() == "QL_renderShader") {
            glFinish();
            onPass({});
        }
        run.entities.after(call);
        for (const auto& check : checks) check->after(call);
    }

private:
    WatchedRun run;
    const std::string script;  // the path of fx.js
    const PassListener onPass;
    std::vector<std::unique_ptr<CallCheck>> checks;
};

ScriptWatch::ScriptWatch(const EffectSource& source, PassListener onPass)
    : watcher(std::make_unique<Watcher>(source, std::move(onPass))) {}

ScriptWatch::~ScriptWatch() = default;

Diagnostics ScriptWatch::take() {
    return watcher->take();
}

}  // namespace quillon::cli
