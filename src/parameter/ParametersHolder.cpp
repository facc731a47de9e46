#include "parameter/ParametersHolder.h"

#include "platform/Singletons.h"

namespace quillon {

std::uint32_t ParametersHolder::Count() {
    return static_cast<std::uint32_t>(items.size());
}

Parameter& ParametersHolder::At(std::uint32_t index) {
    return index < items.size() ? items[index] : Null();
}

Parameter& ParametersHolder::Find(std::uint32_t id) {
    const auto found = byId.find(id);
    return found != byId.end() ? *found->second : Null();
}

void ParametersHolder::CopyFrom(ParametersHolder& source) {
    items.clear();
    byId.clear();
    const std::uint32_t count = source.Count();
    for (std::uint32_t position = 0; position < count; ++position) items.push_back(source.At(position));
    for (Parameter& item : items) byId[item.id] = &item;
}

Parameter& ParametersHolder::Null() {
    return ustl::Immortal<Parameter>();
}

}  // namespace quillon
