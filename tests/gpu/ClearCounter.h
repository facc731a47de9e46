#pragma once

namespace quillon::test {

// How often the GPU layer has called glClear in this process: fresh storage is zero with some drivers, cleared or not.
int ClearCount();

}  // namespace quillon::test
