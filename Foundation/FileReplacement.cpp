#include "Foundation/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

namespace corvane {

namespace {

namespace fs = std::filesystem;

// Removes the temporary file unless it was renamed into place.
class TemporaryFileGuard {
public:
    explicit TemporaryFileGuard(std::string name) : path(std::move(name)) {}
    TemporaryFileGuard(const TemporaryFileGuard&) = delete;
    TemporaryFileGuard& operator=(const TemporaryFileGuard&) = delete;
    ~TemporaryFileGuard() {
        if (!committed) {
            ::unlink(path.c_str());
        }
    }
    void commit() { committed = true; }

private:
    std::string path;
    bool committed = false;
};

// Makes a rename durable across a crash.
bool syncDirectory(const fs::path& directory) {
    FileDescriptor folder(
        ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.isOpen() && ::fsync(folder.get()) == 0;
}

}  // namespace

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        // Nothing taken for a non-empty write would be asked again for ever.
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<FileDescriptor> replaceFileContents(const fs::path& path, std::string_view contents,
                                                  mode_t permissions) {
    std::string temporaryName = path.string() + std::string(replacementTemporarySuffix);
    FileDescriptor temporary(::mkostemp(temporaryName.data(), O_CLOEXEC));
    if (!temporary.isOpen()) {
        return std::nullopt;
    }
    TemporaryFileGuard guard(temporaryName);
    if (!writeAll(temporary.get(), contents) || ::fchmod(temporary.get(), permissions) != 0 ||
        ::fsync(temporary.get()) != 0 || ::rename(temporaryName.c_str(), path.c_str()) != 0) {
        return std::nullopt;
    }
    guard.commit();
    // The new file is in place whatever this answers; a failure only weakens crash durability.
    syncDirectory(path.parent_path());
    return temporary;
}

}  // namespace corvane
