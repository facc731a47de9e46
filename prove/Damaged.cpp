// Planted once: a file in the archive that is as long as the directory says.

#include <lodepng.h>

#include <cstring>
#include <fstream>
#include <random>

#include "Effects.h"
#include "Ground.h"
#include "packer/Archive.h"
#include "packer/FileError.h"
#include "packer/PackageReader.h"
#include "packer/WholeFile.h"
#include "support/EngineTest.h"

namespace quillon::prove {

namespace {

using Bytes = test::Bytes;

std::uint32_t Below(std::mt19937& random, std::size_t bound) {
    return static_cast<std::uint32_t>(random() % std::max<std::size_t>(bound, 1));
}

// One to four faults: bits, cuts, numbers at the ends of their ranges, pieces in another place.
void Damage(Bytes& bytes, std::mt19937& random) {
    constexpr std::uint32_t kEnds[] = {0,      1,          0x7F,       0xFF,       0x7FFF,
                                       0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
    for (unsigned faults = 1 + random() % 4; faults > 0 && bytes.size() > 8; --faults) {
        // Ends hold the records that are read first.
        const std::size_t from = random() % 2 ? 0 : bytes.size() - std::min<std::size_t>(bytes.size(), 120);
        const std::size_t at = std::min(from + Below(random, random() % 2 ? 120 : bytes.size()), bytes.size() - 5);
        switch (random() % 6) {
            case 0:
                bytes[at] ^= static_cast<std::byte>(1u << random() % 8);
                break;
            case 1:
                bytes.resize(at + 1);
                break;
            case 2:
                bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
                break;
            case 3: {
                const std::uint32_t number = kEnds[random() % std::size(kEnds)];
                std::memcpy(&bytes[at], &number, random() % 2 ? 2 : 4);
                break;
            }
            case 4:
                bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), Below(random, 300), bytes[at]);
                break;
            default:
                std::memmove(&bytes[Below(random, bytes.size() - 4)], &bytes[at], 4);
        }
    }
}

std::string Text(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Bytes ToBytes(const std::string& text) {
    const auto view = std::as_bytes(std::span(text));
    return {view.begin(), view.end()};
}

// An effect that reads everything that its package holds.
test::Files Whole() {
    std::vector<unsigned char> png, pixels(8 * 8 * 4, 77);
    lodepng::encode(png, pixels, 8, 8);
    return {{"fx.js",
             "var s; function setup() { QL_initTexture('a.png'); s = QL_initShader('copy'); }\n"
             "function draw() { QL_setShaderParamVal(s, 'sInput0', QL_getSequenceTexture());"
             " QL_renderShader(s, QL_getSequenceRT(), true); }"},
            {"copy.frag", test::kCopyFragment},
            {"config.xml", test::kConfig},
            {"a.png", {png.begin(), png.end()}}};
}

// The package with faults in one of its files, or as a whole. A script stays as it is: one that never ends is no fault
// of the package.
Bytes DamagedPackage(std::mt19937& random) {
    test::Files files = Whole();
    const unsigned kind = random() % 4;
    if (kind < 2) {
        std::string& content = files[kind == 0 ? 2 : 3].second;
        Bytes bytes = ToBytes(content);
        Damage(bytes, random);
        content = Text(bytes);
    }
    Bytes package = test::ScrambledPackage(files);
    if (kind == 2) {
        Bytes archive = Unscramble(package);
        Damage(archive, random);
        package = Scramble(archive);
    } else if (kind == 3) {
        Damage(package, random);
    }
    return package;
}

}  // namespace

// A module without any package is what the contract ends the process for; none of these is empty.
std::string Damaged(bool isLong) {
    const int cases = isLong ? 100'000 : 2000;
    const LoadedEffect good(Whole());
    const host::EffectModule module = good.effect();
    const auto frameOf = [&](const host::EffectModule& effect) -> Bytes {
        host::HostSession session(effect, Unrecorded());
        if (session.globalSetup().error != 0 || session.paramsSetup().error != 0) return {};
        host::HostInstance& instance = session.newInstance();
        session.sequenceSetup(instance);
        const host::FrameResult frame = session.renderFrame(instance, {WorldOf(session, 6, 5, 8, 9)});
        session.sequenceSetdown(instance);
        return frame.output ? frame.output->tightBytes() : Bytes();
    };
    const Bytes wanted = frameOf(module);
    Require(!wanted.empty(), "the sound package gives no frame");
    int rendered = 0;
    for (int i = 0; i < cases; ++i) {
        NowAt("package " + std::to_string(i));
        std::mt19937 random(static_cast<unsigned>(i));
        const test::TestModule carrier(DamagedPackage(random));
        rendered += frameOf(host::EffectModule(module.entry(), carrier.module())) == wanted ? 1 : 0;
        if (i % 20 == 0) Require(frameOf(module) == wanted, "another picture after package " + std::to_string(i));
    }

    // Modules of both systems, as the tool reads them.
    const TemporaryFolder folder;
    int refused = 0;
    const Bytes sound[] = {ReadWholeFile(good.file()), ReadWholeFile(test::WindowsModule("resources"))};
    for (int i = 0; i < cases; ++i) {
        NowAt("module " + std::to_string(i));
        std::mt19937 random(static_cast<unsigned>(i));
        Bytes bytes = sound[i % 2];
        Damage(bytes, random);
        const std::filesystem::path file = folder.path() / "damaged";
        // It need not reach the disk.
        Require((std::ofstream(file, std::ios::binary) << Text(bytes) << std::flush).good(),
                "a damaged module cannot be written");
        try {
            ReadPackage(file);
        } catch (const FileError&) {
            ++refused;
        }
    }
    return std::to_string(2 * cases) + " damages; " + std::to_string(rendered) + " packages render all the same, " +
           std::to_string(refused) + " modules are refused";
}

}  // namespace quillon::prove
