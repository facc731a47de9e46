#include "cli/system/Sockets.h"

#include <winsock2.h>

namespace quillon::cli {

void RequireOwnAddress(std::uintptr_t socket) {
    const BOOL yes = TRUE;
    setsockopt(static_cast<SOCKET>(socket), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
               sizeof(yes));
}

}  // namespace quillon::cli
