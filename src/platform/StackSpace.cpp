#include "platform/StackSpace.h"

namespace quillon {

namespace {
int callsLeft = -1;  // without a limit
}

CallLimit::CallLimit(int calls) {
    callsLeft = calls;
}

CallLimit::~CallLimit() {
    callsLeft = -1;
}

}  // namespace quillon

extern "C" int quillon_refuses_call(void) {
    if (quillon::callsLeft == 0) return 1;
    if (quillon::callsLeft > 0) --quillon::callsLeft;
    return quillon::NativeStackIsLow() ? 1 : 0;
}
