#pragma once

#include <filesystem>
#include <string>

#include "cli/system/ChildProcess.h"

// Movies go in and out through the programs ffmpeg and ffprobe, which run beside the tool and exchange plain pictures
// with it over pipes. They are not linked, and only movies need them.

namespace quillon::cli {

// By the name's ending. A GIF is a picture as an input.
bool IsMovieInput(const std::filesystem::path& path);
bool IsMovieOutput(const std::filesystem::path& path);

// What is known of a movie before its frames are read.
struct MovieInfo {
    double framesPerSecond = 25;  // of a movie with a varying rate the mean
    std::int32_t frames = 0;      // 0: not known
    std::uint32_t bitDepth = 8;   // 16 when a channel has more than 8 bits
};

// Throws a Fault.
MovieInfo ProbeMovie(const std::filesystem::path& path);

// A frame rate as a fraction: 24/1, 30000/1001.
struct FrameRate {
    std::int64_t numerator = 25;
    std::int64_t denominator = 1;
    std::string text() const { return std::to_string(numerator) + "/" + std::to_string(denominator); }
};
FrameRate RateOf(double framesPerSecond);

// Starts one of the programs. Throws a Fault that says what to install.
std::unique_ptr<ChildProcess> StartMovieProgram(const std::string& program, const std::vector<std::string>& arguments,
                                                ChildProcess::Pipe pipe);

}  // namespace quillon::cli
