#include <gtest/gtest.h>

#include <new>

#include "entities/Context.h"
#include "script/Scripting.h"

// The blocks that the script heap can still allocate; below 0 all of them. The linker brings this program's own calls
// of malloc and realloc here.
static long blocksLeft = -1;

static bool HasBlock() {
    if (blocksLeft == 0) return false;
    if (blocksLeft > 0) --blocksLeft;
    return true;
}

extern "C" void* __real_malloc(std::size_t bytes);
extern "C" void* __real_realloc(void* block, std::size_t bytes);
extern "C" void* __wrap_malloc(std::size_t bytes) {
    return HasBlock() ? __real_malloc(bytes) : nullptr;
}
extern "C" void* __wrap_realloc(void* block, std::size_t bytes) {
    return HasBlock() ? __real_realloc(block, bytes) : nullptr;
}

namespace quillon::test {
namespace {

// From no memory at all on. Scripts that find no more memory than the heap itself took end, and nothing else does.
TEST(HeapMemory, OpensAHeapOrThrows) {
    Scripting& scripting = Scripting::instance();
    for (const long blocks : {0, 1, 2, 3}) {
        blocksLeft = blocks;
        bool isOpen = true;
        try {
            scripting.Open();
            scripting.Eval("var list = []; for (;;) list.push({});");
        } catch (const std::bad_alloc&) {
            isOpen = false;
        }
        blocksLeft = -1;
        EXPECT_EQ(isOpen, blocks > 0) << blocks;
        EXPECT_EQ(scripting.Context() != nullptr, isOpen);
        scripting.Eval("QL_initParam('n', 1)");
        EXPECT_EQ(Context::Instance().Count(), isOpen ? 1u : 0u);
        scripting.Close();
    }
}

}  // namespace
}  // namespace quillon::test
