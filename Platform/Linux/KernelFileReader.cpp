#include "Platform/Linux/KernelFileReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "Foundation/FileDescriptor.h"

namespace corvane {

namespace {

// Enough for /proc/stat, /proc/meminfo and /proc/vmstat of an ordinary machine in one go; the
// buffer doubles from here when a file does not fit.
constexpr std::size_t initialCapacity = 16 * 1024;

}  // namespace

KernelFileReader::KernelFileReader(std::size_t limit)
    : limitBytes(std::max<std::size_t>(limit, 1)) {}

bool KernelFileReader::grow(std::size_t used) {
    if (capacity >= limitBytes) {
        return false;
    }
    const auto newCapacity = std::min(limitBytes, capacity == 0 ? initialCapacity : capacity * 2);
    auto larger = std::make_unique<char[]>(newCapacity);
    if (used > 0) {
        std::memcpy(larger.get(), buffer.get(), used);
    }
    buffer = std::move(larger);
    capacity = newCapacity;
    return true;
}

std::optional<std::string_view> KernelFileReader::read(const char* path) {
    FileDescriptor file(::open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0) {
        return std::nullopt;
    }
    // procfs and sysfs report a size of 0 or 4096 whatever the content, so the size is never
    // asked: read until end of file, or until the limit.
    std::size_t used = 0;
    bool truncated = false;
    while (true) {
        if (used == capacity && !grow(used)) {
            truncated = true;
            break;
        }
        const auto count = ::read(file.get(), buffer.get() + used, capacity - used);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        used += static_cast<std::size_t>(count);
    }
    std::string_view content(buffer.get(), used);
    if (truncated) {
        // Never hand a parser a torn last line: a number cut in half still parses.
        const auto lastNewline = content.rfind('\n');
        content = lastNewline == std::string_view::npos ? std::string_view{}
                                                        : content.substr(0, lastNewline + 1);
    }
    if (content.empty()) {
        return std::nullopt;
    }
    return content;
}

}  // namespace corvane
