#include "host/Records.h"

#include <algorithm>

namespace quillon::host {

int Records::count(Callback callback) const {
    return static_cast<int>(
        std::ranges::count_if(trace, [&](const TraceLine& line) { return line.callback == callback; }));
}

int Records::count(Callback callback, const std::string& text, std::int64_t key) const {
    return static_cast<int>(std::ranges::count_if(trace, [&](const TraceLine& line) {
        return line.callback == callback && line.text == text && line.key == key;
    }));
}

}  // namespace quillon::host
