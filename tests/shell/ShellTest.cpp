#include "shell/ShellTest.h"

#include <chrono>
#include <future>
#include <thread>

namespace quillon::test {

ShellTest::ShellTest() {
    maps = {};
}

void ShellTest::TearDown() {
    for (const HostSession& session : sessions) EXPECT_THAT(session.violations(), IsEmpty());
    ASSERT_TRUE(PassesGate(PF_Cmd_UNUSED_0, 10000)) << "the gate is left closed";
    bool isLockFree = false;
    std::thread([&] {
        isLockFree = engine.lockGL();
        if (isLockFree) engine.unlockGL();
    }).join();
    EXPECT_TRUE(isLockFree) << "the GL lock is left taken";
}

HostSession& ShellTest::load(const std::string& script, const HostSettings& settings, const Files& files) {
    Files all = files;
    all.emplace_back("fx.js", script);
    const bool hasConfig =
        std::any_of(files.begin(), files.end(), [](const auto& file) { return file.first == "config.xml"; });
    if (!hasConfig) all.emplace_back("config.xml", kConfig);
    const TestEffect& effect = packed.emplace_back(all);
    return sessions.emplace_back(host::EffectModule(EntryPointFunc, effect.module()), settings);
}

HostSession& ShellTest::start(const std::string& script, const HostSettings& settings, const Files& files) {
    HostSession& session = load(script, settings, files);
    session.start();
    return session;
}

std::shared_ptr<World> ShellTest::WorldOf(const HostSession& session, A_long width, A_long height, const Bytes& tight) {
    const auto depth = static_cast<int>(2 * tight.size() / static_cast<std::size_t>(width * height));
    std::shared_ptr<World> made = session.newWorld(width, height, depth);
    made->write(tight);
    return made;
}

std::shared_ptr<World> ShellTest::Picture(const HostSession& session, int depth, A_long width, A_long height) {
    return WorldOf(session, width, height,
                   DistinctPicture(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                                   static_cast<std::uint32_t>(depth)));
}

bool PassesGate(PF_Cmd cmd, int milliseconds) {
    const auto passed = std::make_shared<std::promise<void>>();
    std::future<void> done = passed->get_future();
    std::thread([cmd, passed] {
        EntryPointFunc(cmd, nullptr, nullptr, nullptr, nullptr, nullptr);
        passed->set_value();
    }).detach();
    return done.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready;
}

struct StolenLock::Thief {
    std::promise<bool> taken;
    std::promise<void> returned;
    std::thread thread;
};

StolenLock::StolenLock() : thief(std::make_unique<Thief>()) {
    thief->thread = std::thread([this] {
        const bool isTaken = AEQuillon2::instance().lockGL();
        thief->taken.set_value(isTaken);
        thief->returned.get_future().wait();
        if (isTaken) AEQuillon2::instance().unlockGL();
    });
    EXPECT_TRUE(thief->taken.get_future().get());
}

StolenLock::~StolenLock() {
    thief->returned.set_value();
    thief->thread.join();
}

}  // namespace quillon::test
