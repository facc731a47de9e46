#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/movie/FrameOutput.h"
#include "cli/pictures/Chart.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/sequence/Progress.h"
#include "host/HostSettings.h"

// The tool's commands. Each takes what its command line says, prints its results on standard output and its warnings on
// standard error, and gives the exit status. Each throws ToolError when the effect, a file or the command line is at
// fault. Texts are UTF-8.

namespace quillon::cli {

// What to render, as which host, and where to.
struct RenderOptions {
    std::filesystem::path effect;
    std::filesystem::path input;   // empty: the test picture
    std::filesystem::path output;  // empty: only a contact sheet
    std::uint32_t depth = 0;       // bits per channel; 0: what the input has
    double timeSeconds = 0;
    std::string frames;                     // FIRST-LAST[xSTEP]; empty: one moment
    std::optional<double> framesPerSecond;  // default: that of a movie, else 25
    std::vector<std::string> values;        // NAME=VALUE
    std::vector<std::string> layers;        // NAME=FILE
    std::uint32_t rawWidth = 0;             // of raw inputs; 0: not given
    std::uint32_t rawHeight = 0;

    host::HostKind host = host::HostKind::afterEffects;
    std::int32_t hostVersionMajor = 13;
    std::int32_t hostVersionMinor = 9;
    std::optional<host::Route> route;
    std::uint32_t downsample = 1;
    PF_RationalScale pixelAspect{1, 1};
    std::uint32_t compWidth = 0;  // 0: as the input
    std::uint32_t compHeight = 0;

    StorageOptions storage;  // rate and pixel aspect follow from the above

    std::vector<std::string> keys;                 // NAME@FRAME=VALUE[~INTERPOLATION]
    std::vector<std::filesystem::path> keyTables;  // .csv, .json
    unsigned threads = 0;                          // 0: as many as the machine has cores
    ProgressForm progress = ProgressForm::bar;
    std::uint32_t part = 1;  // of `parts` pieces of the sequence, from 1
    std::uint32_t parts = 1;
    bool isResumed = false;                    // frames whose output is there are left out
    unsigned jobs = 1;                         // processes that render
    std::vector<std::string> arguments;        // the whole command line, for those processes
    std::vector<std::int32_t> assignedFrames;  // in such a process: its frames, in place of what the above say

    std::string shown;                   // a render target in place of the output; empty: the output
    std::vector<std::string> sweeps;     // NAME=VALUE,VALUE,...; up to two
    std::filesystem::path contactSheet;  // empty: none

    std::optional<StreamForm> stream;  // of standard output; default raw
    Background background;             // of what has no alpha
    std::string codecArgs;             // further arguments of ffmpeg, separated by blanks
};

// `quillon render`: renders one picture or a sequence, and prints the path of each as it is written.
int RunRender(const RenderOptions& options);

// `quillon worker`, which other processes of this program start, see WorkerMessage.h: answers one request, whose
// "arguments" are a command line, or one of a preview or a check, see PreviewMessages.h and CheckWorker.h.
int RunWorker();

// Whose controls to print.
struct ParamsOptions {
    std::filesystem::path effect;
    bool isJson = false;
};

// `quillon params`: prints the effect's controls as its host sees them.
int RunParams(const ParamsOptions& options);

// What to look into.
struct InfoOptions {
    std::filesystem::path effect;
    std::string rewritten;  // name of a shader's file; empty: the whole effect
    bool isJson = false;
};

// `quillon info`: prints what an effect or any module is and holds, or one of its shaders as the driver gets it.
int RunInfo(const InfoOptions& options);

enum class CheckFormat { text, json, sarif };

// What to check, and how hard.
struct CheckOptions {
    std::vector<std::filesystem::path> effects;
    int level = 3;  // 1 to 5
    CheckFormat format = CheckFormat::text;
    bool deniesWarnings = false;
    double secondsLimit = 10;  // of each part of a script
};

// `quillon check`: looks for faults in effects, one after the other. Prints its findings on standard error and one line
// for each effect without an error, or one document for all of them. 1 when an effect has an error.
int RunCheck(const CheckOptions& options);

// What to pack, and where to.
struct PackOptions {
    std::filesystem::path folder;
    std::filesystem::path output;
    bool isListed = false;  // prints the module's files too
    bool isForFrei0r = false;
    bool isUnchecked = false;
};

// `quillon pack`: checks the effect at level 2, makes its module and prints the module's path.
int RunPack(const PackOptions& options);

// The picture to write, with its size in pixels.
struct ChartOptions {
    std::filesystem::path output;
    std::uint32_t width = kChartWidth;
    std::uint32_t height = kChartHeight;
    std::string frames;  // FIRST-LAST[xSTEP] of footage; empty: one picture
};

// `quillon chart`: writes the tool's test picture, or footage of it, and prints the paths.
int RunChart(const ChartOptions& options);

// Two pictures, patterns or movies.
struct CompareOptions {
    std::filesystem::path first;
    std::filesystem::path second;
    std::filesystem::path output;  // of the drawn difference; empty: none
    std::string frames;            // FIRST-LAST[xSTEP] of patterns
    std::uint32_t rawWidth = 0;    // of .argb; 0: not given, as the next two
    std::uint32_t rawHeight = 0;
    std::uint32_t depth = 0;
    double limit = 0;         // a larger difference fails a pixel
    double limitPercent = 0;  // more failed pixels fail the picture
};

// `quillon compare`: prints how two pictures, or the pairs of two sequences, differ. 1 when one differs by more than is
// allowed.
int RunCompare(const CompareOptions& options);

// The effect to make, and the template or the shader files that it is made from.
struct NewOptions {
    std::filesystem::path folder;  // of the new effect, whose name is its last part
    std::string templateName = "basic";
    std::filesystem::path from;  // empty: the template
    std::filesystem::path common;
    std::map<std::string, std::filesystem::path> buffers;  // by "a" to "d"
    std::vector<std::string> exposed;                      // names of #define lines
    std::vector<std::string> channels;                     // PASS:N=SOURCE
};

// `quillon new`: makes the folder of a new effect from a template or a shader file, and prints its path. What of a
// shader file is carried over in another form is a warning. A file that cannot be carried over, or whose shaders do not
// compile, leaves no folder.
int RunNew(const NewOptions& options);

// What to read about.
struct DocsOptions {
    std::string topic;  // empty: the list of topics
    bool isManPage = false;
};

// `quillon docs`: prints a page of the documentation, or what it says about a function or a command.
int RunDocs(const DocsOptions& options);

// `quillon doctor`: prints what the tool finds on this machine, and how to get what is missing. 1 when effects cannot
// be rendered or packed.
int RunDoctor();

}  // namespace quillon::cli
