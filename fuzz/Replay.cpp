// In builds without libFuzzer: gives the target each file of a corpus, then inputs that are made from those.
//
//   fuzz_NAME [--seconds=N] [--seed=N] [--last=FILE] FILE_OR_FOLDER...    0 seconds, the seed 1, "last-input"
//
// Each of these is in FILE while it runs, for the case that it ends the process. A seed gives the same inputs in the
// same order, so that a fault comes up again; the time only says how many. What libFuzzer does with the knowledge of
// which code an input reaches, this cannot: it finds what is near the corpus.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

constexpr std::size_t kMostBytes = 16384;
constexpr std::string_view kNumbers[] = {"0",   "-1",    "1e308",      "nan",         "0.5",
                                         "255", "65536", "2147483648", "-99999999999"};

// Makes inputs from those of a corpus, which has one at least.
class Invention {
public:
    Invention(const std::vector<Input>& inputs, unsigned seed) : corpus(inputs), random(seed) {}

    Input next() {
        Input input = corpus[below(corpus.size())];
        for (std::size_t changes = 1 + below(4); changes > 0; --changes) change(input);
        if (input.size() > kMostBytes) input.resize(kMostBytes);
        return input;
    }

private:
    // From 0, less than `end`. Not a distribution of the library, whose numbers differ by system.
    std::size_t below(std::size_t end) { return random() % end; }

    // Some bytes from `at` on.
    Input pieceOf(const Input& input, std::size_t at) {
        const auto first = input.begin() + static_cast<std::ptrdiff_t>(at);
        const std::size_t rest = input.size() - at, most = below(4) == 0 ? rest : std::min<std::size_t>(rest, 32);
        return {first, first + static_cast<std::ptrdiff_t>(below(most + 1))};
    }

    // Replaces a piece by one that is like it, by nothing, or by one from elsewhere.
    void change(Input& input) {
        const std::size_t at = below(input.size() + 1);
        const Input old = pieceOf(input, at);
        Input piece = old;
        switch (below(6)) {
            case 0:
                if (!piece.empty()) piece.front() ^= static_cast<std::uint8_t>(1u << below(8));
                break;
            case 1:
                if (!piece.empty()) piece.back() = static_cast<std::uint8_t>(below(256));
                break;
            case 2:
                piece.clear();
                break;
            case 3:
                piece.insert(piece.end(), old.begin(), old.end());
                break;
            case 4: {
                const std::string_view number = kNumbers[below(std::size(kNumbers))];
                piece.assign(number.begin(), number.end());
                break;
            }
            default: {
                const Input& other = corpus[below(corpus.size())];
                piece = pieceOf(other, below(other.size() + 1));
            }
        }
        const auto place = input.begin() + static_cast<std::ptrdiff_t>(at);
        input.insert(input.erase(place, place + static_cast<std::ptrdiff_t>(old.size())), piece.begin(), piece.end());
    }

    const std::vector<Input>& corpus;
    std::mt19937 random;
};

std::vector<std::filesystem::path> FilesOf(const std::vector<std::filesystem::path>& places) {
    std::vector<std::filesystem::path> files;
    for (const std::filesystem::path& place : places) {
        if (!std::filesystem::is_directory(place))
            files.push_back(place);
        else
            for (const auto& entry : std::filesystem::directory_iterator(place)) files.push_back(entry.path());
    }
    std::ranges::sort(files);  // the same order everywhere
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::filesystem::path> places;
    unsigned long seconds = 0, seed = 1;
    const char* last = "last-input";
    for (const std::string_view argument : std::vector<const char*>(argv + 1, argv + argc)) {
        if (argument.starts_with("--seconds="))
            seconds = std::strtoul(argument.data() + 10, nullptr, 10);
        else if (argument.starts_with("--seed="))
            seed = std::strtoul(argument.data() + 7, nullptr, 10);
        else if (argument.starts_with("--last="))
            last = argument.data() + 7;
        else
            places.emplace_back(argument);
    }
    std::vector<Input> corpus;
    for (const std::filesystem::path& file : FilesOf(places)) {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
        if (!stream) return std::perror(file.c_str()), 1;
        std::fprintf(stderr, "%s\n", file.c_str());  // the last line names the input that ended the process
        // A copy of exactly this length, so that the sanitizer sees a read after its end.
        LLVMFuzzerTestOneInput(corpus.emplace_back(bytes.begin(), bytes.end()).data(), bytes.size());
    }
    if (corpus.empty()) return std::fprintf(stderr, "no inputs\n"), 1;

    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    Invention invention(corpus, static_cast<unsigned>(seed));
    std::size_t invented = 0;
    std::fprintf(stderr, "invented, with --seed=%lu, the last one in %s\n", seed, last);
    for (; std::chrono::steady_clock::now() < end; ++invented) {
        const Input input = invention.next();
        std::ofstream(last, std::ios::binary)
            .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::remove(last);
    std::fprintf(stderr, "%zu inputs, %zu invented\n", corpus.size(), invented);
    return 0;
}
