#include "cli/system/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <utility>

namespace quillon::cli {

namespace {

// A name is the path of a descriptor of the process that made the memory, then this and a number: the descriptor may
// belong to other memory later, and the name does not.
constexpr char kSerialMark = '#';

}  // namespace

struct SharedMemory::System {
    ~System() {
        if (start != MAP_FAILED) munmap(start, size);
        if (file >= 0) close(file);
    }

    // `error` 0: that of the last system call.
    static void Require(bool isDone, int error = 0) {
        if (!isDone) throw std::system_error(error != 0 ? error : errno, std::generic_category());
    }

    // All pages at once, which costs less than a fault for each.
    std::span<std::byte> map(std::size_t bytes) {
        size = bytes;
        start = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, file, 0);
        Require(start != MAP_FAILED);
        return {static_cast<std::byte*>(start), size};
    }

    std::size_t size = 0;
    int file = -1;
    void* start = MAP_FAILED;
};

SharedMemory::SharedMemory(std::size_t size) : system(std::make_unique<System>()) {
    system->file = memfd_create("quillon", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    System::Require(system->file >= 0);
    // Memory that is missing is an error here, and a signal at the first write to a page otherwise.
    const int error = posix_fallocate(system->file, 0, static_cast<off_t>(size));
    System::Require(error == 0, error);
    System::Require(fcntl(system->file, F_ADD_SEALS, F_SEAL_SHRINK) == 0);
    mapped = system->map(size);
    static std::atomic<unsigned> made = 0;
    ownName = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(system->file) + kSerialMark +
              std::to_string(++made);
}

SharedMemory::SharedMemory(std::string name, std::size_t size)
    : system(std::make_unique<System>()), ownName(std::move(name)) {
    system->file = open(ownName.substr(0, ownName.find(kSerialMark)).c_str(), O_RDWR | O_CLOEXEC);
    struct stat found {};
    System::Require(system->file >= 0 && fstat(system->file, &found) == 0);
    const int seals = fcntl(system->file, F_GET_SEALS);
    System::Require(seals >= 0);
    System::Require((seals & F_SEAL_SHRINK) != 0 && static_cast<std::size_t>(found.st_size) >= size, EINVAL);
    mapped = system->map(size);
}

SharedMemory::~SharedMemory() = default;

}  // namespace quillon::cli
