#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace quillon {

// Owner of all entities of one kind. An entity is named by an id, which scripts carry as a number: the top byte is the
// kind's tag, the rest an ordinal from 1. The lowest free ordinal is used first, so the id of an erased entity comes
// back with the next one of its kind.
class Factory {
public:
    Factory() = default;
    virtual ~Factory() = default;
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;

    // A new, default-constructed entity.
    virtual std::uint32_t Allocate() { return 0; }
    // Ends the entity; an id that names none has no effect.
    virtual void Erase(std::uint32_t) {}
};

// The tag of an id: everything but its ordinal masked off.
inline constexpr std::uint32_t kTagMask = 0xFF000000;
constexpr std::uint32_t TagOf(std::uint32_t id) {
    return id & kTagMask;
}

// The factory of one entity type. Entities live by value in the map's nodes, so that an address is valid while its
// entity lives.
template <class T, std::uint32_t Tag>
class EntityFactory : public Factory {
public:
    using Entity = T;
    static constexpr std::uint32_t kTag = Tag;

    std::uint32_t Allocate() override {
        const std::uint32_t id = freed.empty() ? next : *freed.begin();
        inOrder.clear();
        entities.try_emplace(id);
        if (freed.empty())
            ++next;
        else
            freed.erase(freed.begin());
        return id;
    }

    void Erase(std::uint32_t id) override {
        const auto found = entities.find(id);
        if (found == entities.end()) return;
        freed.insert(id);
        inOrder.clear();
        entities.erase(found);
    }

    // Null when the id names nothing here.
    T* Find(std::uint32_t id) {
        const auto found = entities.find(id);
        return found != entities.end() ? &found->second : nullptr;
    }

    // The entity at this position in ascending id order; null from the last one on. A walk over all positions takes
    // linear time while no entity comes or goes.
    T* At(std::size_t position) {
        if (inOrder.empty()) {
            inOrder.reserve(entities.size());
            for (auto& [id, entity] : entities) inOrder.push_back(&entity);
        }
        return position < inOrder.size() ? inOrder[position] : nullptr;
    }

    // In ascending id order, and for walking over all of them.
    std::map<std::uint32_t, T>& All() { return entities; }

private:
    std::map<std::uint32_t, T> entities;
    std::set<std::uint32_t> freed;  // ids below `next` that name nothing now
    std::uint32_t next = Tag + 1;
    std::vector<T*> inOrder;  // of all entities; empty until somebody asks for a position
};

}  // namespace quillon
