#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace quillon {

class TemporaryClaim;

// A new temporary file or folder, which the object's end removes with all in it. The first object of a process in a
// place also removes what ended processes of this user left there.
class TemporaryPath {
public:
    enum class Kind { file, folder, privateFolder };

    // Makes an empty one with a new name in this folder: a file or folder with the permissions of any new one, or a
    // folder for the calling user only. Throws std::filesystem::filesystem_error.
    TemporaryPath(const std::filesystem::path& place, Kind kind);
    ~TemporaryPath();
    TemporaryPath(const TemporaryPath&) = delete;
    TemporaryPath& operator=(const TemporaryPath&) = delete;

    const std::filesystem::path& path() const { return name; }  // the place that it was made in, and its new name

    // Removes it before the object's end. False when something in it cannot be removed yet, such as a loaded module on
    // Windows.
    bool remove();

    // Gives it this name, in place of what has it, and keeps it. On failure it stays temporary.
    std::error_code moveTo(const std::filesystem::path& path);

private:
    std::filesystem::path name;
    std::unique_ptr<TemporaryClaim> claim;
    bool isTemporary = true;  // false once it is removed or kept
};

// A temporary folder where the system keeps temporary files.
class TemporaryFolder : public TemporaryPath {
public:
    TemporaryFolder() : TemporaryPath(std::filesystem::temp_directory_path(), Kind::privateFolder) {}
};

// Removes the temporary files and folders of this process at once, for those who end it without a return to main(). No
// thread can make one afterwards.
void RemoveTemporaries();

// From now on a signal that ends the process (an interrupt, a request to end, a crash) first removes its temporary
// files and folders. Signals that are ignored or handled already stay as they are. For programs; a module leaves its
// host's signals unchanged.
void RemoveTemporariesAtSignals();

// What such an interrupt or request to end prints on standard error, from now on: up to 255 bytes. One thread.
void SetWordsAtSignals(std::string_view words);

}  // namespace quillon
