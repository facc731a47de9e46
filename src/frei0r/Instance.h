#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frei0r/ControlValues.h"
#include "frei0r/EngineInstance.h"
#include "frei0r/EngineThread.h"
#include "frei0r/FramePixels.h"
#include "frei0r/Listing.h"

namespace quillon::frei0r {

// What a host constructs: an effect for frames of one size, and the values of its parameters. Used under the entry
// gate; making, setting and getting need no engine, which starts with the first frame.
class Instance {
public:
    // The listing outlives the instance. `timeOfASecond` is what a second is in this host's times.
    Instance(const Listing& plugin, FrameSize frameSize, double timeOfASecond);
    ~Instance();

    // Of the parameter at this index of the listing, in the host's record for its type. An index that is not in the
    // listing and a null record are ignored.
    void set(int index, const void* record);
    void get(int index, void* record) const;

    // Renders one frame of the instance's size. An input that is null is transparent black; the second one counts in a
    // mixer only. A frame that cannot be rendered is the first input, copied. `out` may be an input.
    void render(double hostTime, const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* out);

private:
    const ListedControl* controlAt(int index) const;
    bool renderEffect(double seconds, const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* out);
    void sendValues();
    // Converts all rows of a frame, in pieces that this thread and the host's waiting one take in turn.
    void shareRows(const std::function<void(RowRange)>& convert) const;
    void upload(std::uint32_t layer, const std::uint32_t* pixels);
    // Reports why there is no frame. Always false.
    bool refuse(const std::string& why) const;

    const Listing& listing;
    FrameSize size;
    double hostTimeOfASecond;
    std::vector<std::optional<HostValue>> values;  // by parameter; those that the host has not set are the script's
    std::vector<std::uint32_t> pixelsOfEngine;     // an input in the engine's order, on its way there
    bool hasInput = false;                         // a source's one input is uploaded
    std::shared_ptr<EngineThread> thread;          // null before the first frame
    std::unique_ptr<EngineInstance> effect;        // lives on that thread; null before the first frame
};

}  // namespace quillon::frei0r
