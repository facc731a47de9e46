#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "parameter/Parameter.h"

namespace quillon {

// An ordered list of parameters: the copies of one effect instance, or, in Context, the declarations themselves.
// Lookups that miss give the null Parameter, whose id is 0, and never fail. No locks: callers run under the effect's
// entry mutex.
class ParametersHolder {
public:
    ParametersHolder() = default;
    ParametersHolder(const ParametersHolder&) = delete;
    ParametersHolder& operator=(const ParametersHolder&) = delete;

    virtual std::uint32_t Count();  // of the parameters that At() gives
    // The parameter at this position in declaration order.
    virtual Parameter& At(std::uint32_t index);

    // The copy with this id. Of two copies with one id the later one is found.
    Parameter& Find(std::uint32_t id);

    // Replaces all copies by those of source, with their values of this moment.
    void CopyFrom(ParametersHolder& source);

    // The record that lookups give for a missing parameter. Nothing may be written to it.
    static Parameter& Null();

protected:
    ~ParametersHolder() = default;

private:
    std::vector<Parameter> items;
    std::map<std::uint32_t, Parameter*> byId;  // into items, rebuilt whenever items was
};

}  // namespace quillon
