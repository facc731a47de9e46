#pragma once

#include <array>
#include <cstddef>

#include "hostapi/HostApi.h"
#include "shell/HostCleanup.h"

namespace quillon {

// A suite is held for one selector at most, and released in the version in which it was acquired. There are three ways
// to a suite, each with its own answer where it is missing: SuiteCache throws 516, SuiteHold is false (RequiredSuite
// throws 13), and AcquireOrReport shows a message. What a host throws at a release passes on, see HostCleanup.h.

// Hands out suites, acquired at their first use and released at the end of the selector, in that order. A missing suite
// throws the int 516, and so does making a cache without a basic suite.
class SuiteCache {
public:
    explicit SuiteCache(SPBasicSuite* basicSuite);
    ~SuiteCache() noexcept(false);
    SuiteCache(const SuiteCache&) = delete;
    SuiteCache& operator=(const SuiteCache&) = delete;

    // Valid until the cache ends. Throws the int 516, see above.
    template <class Table>
    const Table& get(const SuiteKey<Table>& key) {
        return *static_cast<const Table*>(acquire(key.name, key.version));
    }

private:
    struct Slot {
        const char* name;
        std::int32_t version;
        const void* table;
    };

    const void* acquire(const char* name, std::int32_t version);

    SPBasicSuite* basic;
    std::array<Slot, 8> slots{};  // filled from the front, in the order of first use
    std::size_t used = 0;
    EndOfScope end;
};

// One suite for the life of a scope; false where the host does not have it.
template <class Table>
class SuiteHold {
public:
    // Tries the key's version and, down to `lowestVersion`, the ones below it.
    SuiteHold(SPBasicSuite* basicSuite, const SuiteKey<Table>& key, std::int32_t lowestVersion)
        : basic(basicSuite), name(key.name) {
        if (!basic) return;
        for (version = key.version; version >= lowestVersion; --version) {
            const void* acquired = nullptr;
            if (basic->AcquireSuite(name, version, &acquired) != 0 || !acquired) continue;
            table = static_cast<const Table*>(acquired);
            return;
        }
    }
    SuiteHold(SPBasicSuite* basicSuite, const SuiteKey<Table>& key) : SuiteHold(basicSuite, key, key.version) {}
    ~SuiteHold() noexcept(false) {
        if (table) end.run([this] { basic->ReleaseSuite(name, version); });
    }
    SuiteHold(const SuiteHold&) = delete;
    SuiteHold& operator=(const SuiteHold&) = delete;

    explicit operator bool() const { return table != nullptr; }
    // Only while it is not false.
    const Table* operator->() const { return table; }

private:
    SPBasicSuite* basic;
    const char* name;
    std::int32_t version = 0;
    const Table* table = nullptr;
    EndOfScope end;
};

// The same for suites without which the selector cannot go on: throws the int 13.
template <class Table>
class RequiredSuite : public SuiteHold<Table> {
public:
    RequiredSuite(SPBasicSuite* basicSuite, const SuiteKey<Table>& key) : SuiteHold<Table>(basicSuite, key) {
        if (!*this) throw int{A_Err_MISSING_SUITE};
    }
};

// Asks the host to show a message.
void ShowMessage(PF_InData& in, PF_OutData& out, const char* message);

// Fills `table`; without the suite it asks the host to show a message and gives 516.
PF_Err AcquireOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version, const void** table);
// Its counterpart. Without a basic suite it asks the host to show a message.
void ReleaseOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version);

}  // namespace quillon
