#pragma once

#include <memory>
#include <string>

#include "cli/preview/PreviewSession.h"

namespace quillon::cli {

// The server of a preview's pages, on this machine only. Its address holds a random token; a request without it, or
// from a page of another site, is answered with 403 and nothing else. Below the token:
//
//   GET  /                  the page, and its files
//   GET  /events            an event stream: the session's state, at once and at each change
//   POST /frame             a view as JSON; a frame, see FrameBody
//   POST /layer?name=N&title=T     a picture file for a layer; without bytes "None"
//   POST /restart           the next frame is that of a new worker
//   GET  /picture.png, .exr, .tif  the last frame, as `quillon render` writes it
//
// The body of a frame: 4 bytes, the size of a text, little-endian; the text, a JSON object as PreviewMessages.h has it,
// with blanks at its end so that what follows begins at a multiple of 16; the pixels.
class PreviewServer {
public:
    // At this port, 0 for any that is free. Throws a Fault when it is taken. The session lives longer.
    PreviewServer(PreviewSession& previewSession, int port);
    ~PreviewServer();
    PreviewServer(const PreviewServer&) = delete;
    PreviewServer& operator=(const PreviewServer&) = delete;

    // For the browser.
    const std::string& address() const;

    // Answers until the process ends.
    void run();

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation;
};

}  // namespace quillon::cli
