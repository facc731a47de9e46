#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillon {
class NativeCall;
}

namespace quillon::cli {

// What an id can name.
enum class EntityKind { none, control, shader, target, texture, surface };

// By its top byte; `none` for a number that no entity has, 0 among them.
EntityKind KindOfId(std::uint32_t id);
// "a control", and so on.
const char* WordsOf(EntityKind kind);
// Whether it names something now. Of entities that the engine has made too.
bool IsLive(std::uint32_t id);

// What the script has made and released. Ids are given out again after a release, so each making has its own number.
class Entities {
public:
    struct Record {
        std::uint32_t id = 0;
        std::uint64_t serial = 0;  // of its making, from 1
        int line = 0;              // that made it, in the prepared source
        bool isOfFrame = false;    // made by draw() or preRender()
        int releasedAt = 0;        // line; 0 while it lives
    };

    // A draw() begins, and whether what is made from now on is made in frames.
    void countFrame() { ++frames; }
    void enter(bool isFrame) { isInFrame = isFrame; }
    std::uint64_t frameCount() const { return frames; }

    // Of the calls that make and release.
    void before(const NativeCall& call);
    void after(const NativeCall& call);

    // The last making of this id; null when the script has made none. The engine may have given a released id to
    // something else.
    const Record* find(std::uint32_t id) const;
    // The same while it lives; else null.
    const Record* findLiving(std::uint32_t id) const;
    // Those that live, in the order of their ids.
    std::vector<Record> living() const;

private:
    std::map<std::uint32_t, Record> records;
    std::uint64_t makings = 0;
    std::uint64_t frames = 0;
    bool isInFrame = false;
};

}  // namespace quillon::cli
