#include "cli/check/watch/IdChecks.h"

#include <fmt/format.h>

#include "cli/check/watch/Arguments.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

// Whether all would be well with two of the arguments exchanged.
bool IsOutOfOrder(const Signature& signature, const NativeCall& call, std::size_t argument) {
    const auto fits = [&](std::size_t place, std::size_t given) {
        return FitOf(signature.arguments[place].role, call, given) == Fit::fits;
    };
    for (std::size_t other = 0; other < call.count() && other < signature.arguments.size(); ++other) {
        const bool hasRole = other != argument && HasDemands(signature.arguments[other].role);
        if (hasRole && fits(argument, other) && fits(other, argument)) return true;
    }
    return false;
}

}  // namespace

void IdChecks::before(const NativeCall& call) {
    if (call.name() == "QL_release") return checkRelease(call);
    // A script may call this one to find out whether a picture exists.
    const bool isQuestion = call.name() == "QL_getSurfaceDim";
    const Signature& signature = SignatureOf(call.name());
    for (std::size_t i = 0; i < signature.arguments.size(); ++i) {
        const Fit fit = FitOf(signature.arguments[i].role, call, i);
        if (fit == Fit::fits || (isQuestion && fit == Fit::namesNothing)) continue;
        return report(call, i, fit == Fit::namesNothing);
    }
}

void IdChecks::report(const NativeCall& call, std::size_t argument, bool namesNothing) const {
    const Signature& signature = SignatureOf(call.name());
    const Role role = signature.arguments[argument].role;
    const std::string place = fmt::format("argument {} ({}) is {}", argument + 1, signature.arguments[argument].name,
                                          WordsOfArgument(run, call, argument));
    if (IsOutOfOrder(signature, call, argument))
        return run.findings.add("script/wrong-kind", call, fmt::format("{}, not {}", place, WordsOfRole(role)),
                                fmt::format("the order is {}", signature.asText()));
    if (!namesNothing)
        return run.findings.add(role == Role::number ? "script/wrong-value" : "script/wrong-kind", call,
                                fmt::format("{}, not {}", place, WordsOfRole(role)));
    const bool isEarly = run.entry == Entry::setup && call.typeOf(argument) == NativeCall::Type::number;
    run.findings.add(
        "script/dead-id", call, fmt::format("{}, which names nothing", place),
        isEarly ? "ask QL_getSequenceRT() and QL_getSequenceTexture() in draw(): they give 0 before it" : "");
}

void IdChecks::checkRelease(const NativeCall& call) const {
    // Releasing nothing is harmless, and saves the script a question.
    if (IsLeftOut(call, 0) || call.numberOf(0) == 0.0) return;
    const Fit fit = FitOf(Role::entity, call, 0);
    if (fit != Fit::fits) report(call, 0, fit == Fit::namesNothing);
}

}  // namespace quillon::cli
