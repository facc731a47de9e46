#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/Singletons.h"

namespace quillon {

class ZipArchive;

// The effect's package: the archive that is stored scrambled in a resource of the module, read in place from memory.
// No locks: callers run under the effect's entry mutex.
class BlobReader final : public ustl::static_singleton<BlobReader> {
public:
    virtual ~BlobReader();

    // Takes the resource of `module` (see ReadModuleResource), unscrambles it and opens the archive in it; then, and
    // only then, all file access goes to the package. A resource that is no archive leaves the system in disk mode.
    // An absent or empty resource ends the process. A second call replaces the package.
    static void Load(void* module);

    // The file of this name, of which only the part after the last '\', '/' or ':' counts (not one at the very end),
    // ASCII case ignored. Empty when it is absent, empty or damaged, and when no package is open.
    std::vector<std::byte> ReadFile(const std::wstring& name);

private:
    friend class ustl::static_singleton<BlobReader>;
    BlobReader();
    void Open(void* module);
    // Undoes the scrambling of `package` in place.
    void Unscramble();

    std::vector<std::byte> package;       // the plain archive and eight bytes of noise after it
    std::unique_ptr<ZipArchive> archive;  // reads from `package`; null while none is open
};

}  // namespace quillon
