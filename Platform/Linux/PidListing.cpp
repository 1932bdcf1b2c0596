#include "Platform/Linux/PidListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

// The longest 32-bit pid has 10 digits.
constexpr std::size_t maximumPidDigits = 10;

// Enough for a few thousand procfs entries per call; a larger root takes more calls.
constexpr std::size_t listingBufferSize = 64 * 1024;

// The fields of struct linux_dirent64 that getdents64(2) fills the buffer with.
constexpr std::size_t inodeOffset = 0;
constexpr std::size_t recordLengthOffset = 16;
constexpr std::size_t nameOffset = 19;

}  // namespace

std::optional<std::int32_t> pidFromName(std::string_view name) {
    if (name.empty() || name.size() > maximumPidDigits) {
        return std::nullopt;
    }
    const auto pid = parseNumber<std::int32_t>(name);
    if (!pid || *pid < 1) {
        return std::nullopt;
    }
    return pid;
}

PidListing::PidListing(std::string rootPath) : root(std::move(rootPath)) {}

bool PidListing::rewind() {
    if (!directory.isOpen()) {
        directory =
            FileDescriptor(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOCTTY));
        buffer.resize(listingBufferSize);
        return directory.isOpen();
    }
    return ::lseek(directory.get(), 0, SEEK_SET) == 0;
}

const std::vector<PidEntry>* PidListing::list(std::size_t limit) {
    entries.clear();
    if (!rewind()) {
        return nullptr;
    }
    for (;;) {
        ssize_t length = 0;
        do {
            length = ::getdents64(directory.get(), buffer.data(), buffer.size());
        } while (length < 0 && errno == EINTR);
        if (length < 0) {
            return nullptr;
        }
        if (length == 0) {
            return &entries;
        }
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            const char* record = buffer.data() + offset;
            std::uint16_t recordLength = 0;
            std::memcpy(&recordLength, record + recordLengthOffset, sizeof recordLength);
            if (recordLength == 0) {
                return nullptr;
            }
            offset += recordLength;
            const auto pid = pidFromName(record + nameOffset);
            if (!pid) {
                continue;
            }
            if (entries.size() == limit) {
                return &entries;
            }
            std::uint64_t inode = 0;
            std::memcpy(&inode, record + inodeOffset, sizeof inode);
            entries.push_back({*pid, inode});
        }
    }
}

}  // namespace corvane
