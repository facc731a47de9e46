#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::cli {

// What a request must be before anything is done for it.

// 128 random bits as 32 digits, which nobody guesses.
std::string NewToken();

// Whether two texts are equal, in a time that does not say how much of them is.
bool AreEqual(std::string_view first, std::string_view second);

// Whether the Host header is this machine's own name for itself, with any port: it may be forwarded. A page of another
// site that has its name lead to this machine sends its own.
bool IsOwnHost(std::string_view host);

// Whether an Origin header is that of the tool's own pages, asked for under this Host.
bool IsOwnOrigin(std::string_view origin, std::string_view host);

// A page's wish for a frame, see PreviewSession::frame: only what belongs to one, each value in its range. Nothing for
// any other text.
std::optional<nlohmann::json> ReadView(std::string_view text);

}  // namespace quillon::cli
