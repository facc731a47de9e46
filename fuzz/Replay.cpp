// In builds without libFuzzer: gives the target each file of a corpus, `fuzz_NAME FILE_OR_FOLDER...`.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    for (const std::filesystem::path place : std::vector<const char*>(argv + 1, argv + argc)) {
        if (!std::filesystem::is_directory(place))
            files.push_back(place);
        else
            for (const auto& entry : std::filesystem::directory_iterator(place)) files.push_back(entry.path());
    }
    std::ranges::sort(files);  // the same order everywhere
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
        if (!stream) return std::perror(file.c_str()), 1;
        std::fprintf(stderr, "%s\n", file.c_str());  // the last line names the input that ended the process
        // A copy of exactly this length, so that the sanitizer sees a read after its end.
        const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
