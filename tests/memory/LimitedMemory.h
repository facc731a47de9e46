#pragma once

// Replaces all forms of new and delete in the programs that have this source: others pair them with each other, such as
// GL drivers, which use the nothrow form.

namespace quillon::test {

// How many allocations of this thread still succeed; below 0 all do.
extern thread_local long allocationsLeft;
// Whether only those of this program's own code count: a GL driver need not survive the lack of memory. On Linux only;
// on Windows other modules have other operators.
extern thread_local bool countsOwnCodeOnly;

}  // namespace quillon::test
