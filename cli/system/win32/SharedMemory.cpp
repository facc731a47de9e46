#include "cli/system/SharedMemory.h"

#include <windows.h>

#include <atomic>
#include <system_error>
#include <utility>

namespace quillon::cli {

struct SharedMemory::System {
    ~System() {
        if (start) UnmapViewOfFile(start);
        if (mapping) CloseHandle(mapping);
    }

    static void Require(bool isDone) {
        if (!isDone) throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }

    // The system refuses to map more than the memory has.
    std::span<std::byte> map(std::size_t size) {
        Require(mapping != nullptr);
        start = MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, size);
        Require(start != nullptr);
        return {static_cast<std::byte*>(start), size};
    }

    HANDLE mapping = nullptr;
    void* start = nullptr;
};

SharedMemory::SharedMemory(std::size_t size) : system(std::make_unique<System>()) {
    static std::atomic<unsigned> made = 0;
    ownName = "Local\\quillon-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++made);
    const auto wide = static_cast<unsigned long long>(size);
    system->mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, static_cast<DWORD>(wide >> 32),
                                         static_cast<DWORD>(wide), ownName.c_str());
    System::Require(GetLastError() != ERROR_ALREADY_EXISTS);  // somebody else's
    mapped = system->map(size);
}

SharedMemory::SharedMemory(std::string name, std::size_t size)
    : system(std::make_unique<System>()), ownName(std::move(name)) {
    system->mapping = OpenFileMappingA(FILE_MAP_WRITE, FALSE, ownName.c_str());
    mapped = system->map(size);
}

SharedMemory::~SharedMemory() = default;

}  // namespace quillon::cli
