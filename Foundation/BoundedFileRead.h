#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "Foundation/FileDescriptor.h"

namespace corvane {

/// Reads from `fd` until its end or until `limit` bytes; absent when a read fails. Callers pass
/// one more than they accept to tell a file that is too large from one of exactly the limit.
/// The size `fstat` reports is not trusted: a file may be replaced or grow while it is read, and
/// a device such as /dev/zero never ends.
inline std::optional<std::string> readAtMost(int fd, std::size_t limit) {
    std::string bytes;
    char buffer[64 * 1024];
    while (bytes.size() < limit) {
        const std::size_t wanted = std::min(sizeof buffer, limit - bytes.size());
        const ssize_t got = ::read(fd, buffer, wanted);
        if (got < 0) {
            if (errno == EINTR) {
                continue;
            }
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
    return bytes;
}

/// Why `readFileAtMost` has no text.
enum class FileReadFailure {
    /// The file cannot be opened or read (missing, a directory, a FIFO or socket, no
    /// permission).
    cannotRead,
    /// It holds more than the limit.
    tooLarge,
};

/// The whole of the file at `path` when it holds at most `limit` bytes. Any thread.
inline std::variant<std::string, FileReadFailure> readFileAtMost(const std::filesystem::path& path,
                                                                 std::size_t limit) {
    // Without O_NONBLOCK, opening a FIFO waits for a writer that may never come; a FIFO or a
    // socket where a file belongs is refused rather than waited on.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!file.isOpen()) {
        return FileReadFailure::cannotRead;
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)) {
        return FileReadFailure::cannotRead;
    }
    std::optional<std::string> bytes = readAtMost(file.get(), limit + 1);
    if (!bytes) {
        return FileReadFailure::cannotRead;
    }
    if (bytes->size() > limit) {
        return FileReadFailure::tooLarge;
    }
    return std::move(*bytes);
}

}  // namespace corvane
