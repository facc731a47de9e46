#include "cli/system/ChildProcess.h"

#include <gtest/gtest.h>

#include <system_error>

#include "platform/LittleEndian.h"
#include "platform/TemporaryPath.h"
#include "platform/Utf8Path.h"

// Programs that run beside the tool, by one of our own, whose path has blanks and letters beyond ASCII.

namespace quillon::test {

namespace {

using cli::ChildProcess;
using Pipe = ChildProcess::Pipe;

class Children : public ::testing::Test {
protected:
    Children() {
        const std::filesystem::path place = folder.path() / PathFromUtf8("with blanks \u00fc");
        std::filesystem::create_directory(place);
        const std::filesystem::path file = place / PathFromUtf8("a child \u4e2d.exe");
        std::filesystem::copy_file(PathFromUtf8(QUILLON_CHILD), file);
        program = file.string();
    }

    static std::string ReadAll(ChildProcess& child) {
        std::string text;
        std::byte bytes[100];
        while (const std::size_t count = child.read(bytes)) text.append(reinterpret_cast<const char*>(bytes), count);
        return text;
    }

    TemporaryFolder folder;
    std::string program;
};

TEST_F(Children, GetTheirArgumentsAsTheyAre) {
    const std::vector<std::string> kArguments = {
        "arguments", "",      "two words", "\"quoted\"", "back\\",           "b\\\"c",   "d\\ e\\", "\\\\server\\",
        "%PATH%",    "$HOME", "*",         "a&b|c>d",    "\u00fc\u4e2d.png", "'single'", "^caret",  "tab\there"};
    ChildProcess child(program, kArguments, Pipe::fromChild);
    std::string expected;
    for (std::size_t i = 1; i < kArguments.size(); ++i) expected += kArguments[i] + "\n";
    EXPECT_EQ(ReadAll(child), expected);
    EXPECT_EQ(child.wait(), 7);
    EXPECT_EQ(child.lastWords(), "last words");
}

TEST_F(Children, ExchangeBytesAsTheyAre) {
    // More than a pipe holds, with all that text modes change: line ends, and the end of a file.
    std::vector<std::byte> bytes(300000);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 7 + i / 256);
    std::vector<std::byte> size;
    AppendLittle<std::uint64_t>(size, bytes.size());
    ChildProcess child(program, {"echo"}, Pipe::both);
    ASSERT_TRUE(child.write(size) && child.write(bytes));
    std::vector<std::byte> back(bytes.size() + 1);
    EXPECT_EQ(child.read(back), bytes.size());
    back.pop_back();
    EXPECT_TRUE(back == bytes);
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.lastWords(), "this is for standard error");
}

TEST_F(Children, EndWhenAskedAndWithTheirInput) {
    const std::vector<std::byte> some(16);
    ChildProcess asked(program, {"wait"}, Pipe::both);
    ASSERT_TRUE(asked.write(some));
    asked.end();
    std::byte none;
    EXPECT_EQ(asked.read({&none, 1}), 0u);
    EXPECT_NE(asked.wait(), 3);
    ChildProcess left(program, {"wait"}, Pipe::toChild);
    ASSERT_TRUE(left.write(some));
    EXPECT_EQ(left.wait(), 3);
    // One that has ended takes no more; how much the pipe takes before that shows is the system's matter.
    ChildProcess ended(program, {"arguments"}, Pipe::both);
    EXPECT_EQ(ReadAll(ended), "");
    const std::vector<std::byte> kPage(4096);
    bool isTaken = true;
    for (int i = 0; i < 1000 && isTaken; ++i) isTaken = ended.write(kPage);
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(ended.wait(), 7);
}

TEST_F(Children, ThatAreNotThereAreReported) {
    try {
        ChildProcess child(folder.path().string() + "/no such program", {}, Pipe::toChild);
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
}

}  // namespace

}  // namespace quillon::test
