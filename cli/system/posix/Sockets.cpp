#include "cli/system/Sockets.h"

#include <sys/socket.h>

namespace quillon::cli {

void RequireOwnAddress(std::uintptr_t socket) {
    // Only connections that have ended may still have the address; a second listener may not.
    const int yes = 1;
    setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
}

}  // namespace quillon::cli
