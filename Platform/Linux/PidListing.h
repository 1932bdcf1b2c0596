#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/FileDescriptor.h"

namespace corvane {

/// One process directory of a procfs root: its pid and the inode number the listing gave it.
struct PidEntry {
    std::int32_t pid = 0;
    /// On procfs a process's directory keeps its inode number for as long as something holds a
    /// file below it open, and a new process under a reused pid gets a new one.
    std::uint64_t inode = 0;
};

/// The pid a procfs root entry's name stands for; absent for "self", "sys", "meminfo", "0"...
[[nodiscard]] std::optional<std::int32_t> pidFromName(std::string_view name);

/// Lists the process directories of a procfs root through one descriptor kept open between
/// listings, read with getdents64(2) into a large reused buffer: a listing costs a seek and one
/// system call per few thousand entries, and no allocation once the buffers have grown. One
/// thread at a time.
class PidListing {
public:
    /// Opens `root`; a root that cannot be opened is tried again by the next listing.
    explicit PidListing(std::string root);

    /// Every process directory in the file system's order, at most `limit` of them; absent when
    /// the root cannot be opened or read. Valid until the next listing.
    [[nodiscard]] const std::vector<PidEntry>* list(std::size_t limit);

    /// The root's descriptor, for openat(2) relative to it; -1 while it cannot be opened.
    int descriptor() const { return directory.get(); }

private:
    bool rewind();

    std::string root;
    FileDescriptor directory;
    std::vector<char> buffer;
    std::vector<PidEntry> entries;
};

}  // namespace corvane
