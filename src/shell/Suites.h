#pragma once

#include <array>
#include <cstddef>

#include "hostapi/HostApi.h"

namespace quillon {

// Suites are held for one selector at most, and released with the version that they were acquired with. There are
// three ways to them, and each has its occasions: SuiteCache, SuiteHold and the message acquire.

// Hands out the suites that a selector cannot do without, acquired on first use and released at the end of the
// selector. A suite that cannot be had throws the int 516, and so does making a cache without a basic suite.
class SuiteCache {
public:
    explicit SuiteCache(SPBasicSuite* basicSuite);
    ~SuiteCache();
    SuiteCache(const SuiteCache&) = delete;
    SuiteCache& operator=(const SuiteCache&) = delete;

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
};

// One suite for the life of a scope; false where it cannot be had.
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
    ~SuiteHold() {
        if (table) basic->ReleaseSuite(name, version);
    }
    SuiteHold(const SuiteHold&) = delete;
    SuiteHold& operator=(const SuiteHold&) = delete;

    explicit operator bool() const { return table != nullptr; }
    const Table* operator->() const { return table; }

private:
    SPBasicSuite* basic;
    const char* name;
    std::int32_t version = 0;
    const Table* table = nullptr;
};

// The same for suites whose absence ends the selector: throws the int 13.
template <class Table>
class RequiredSuite : public SuiteHold<Table> {
public:
    RequiredSuite(SPBasicSuite* basicSuite, const SuiteKey<Table>& key) : SuiteHold<Table>(basicSuite, key) {
        if (!*this) throw int{A_Err_MISSING_SUITE};
    }
};

// Asks the host to show a message.
void ShowMessage(PF_InData& in, PF_OutData& out, const char* message);

// The message acquire: fills `table`, or tells the user, and gives 516 then.
PF_Err AcquireOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version, const void** table);
// Its counterpart; the absence of the basic suite alone is told.
void ReleaseOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version);

}  // namespace quillon
