#pragma once

namespace quillon::cli {

// A sample effect: its folder's name and its FXNAME.
struct SampleName {
    const char* folder;
    const char* name;
};

// All of them, and a last row of nulls. Made by the build of effects/.
extern const SampleName kSampleNames[];

}  // namespace quillon::cli
