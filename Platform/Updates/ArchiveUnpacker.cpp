#include "Platform/Updates/ArchiveUnpacker.h"

#include <archive.h>
#include <archive_entry.h>

#include <memory>
#include <string>

namespace corvane::ArchiveUnpacker {

namespace {

namespace fs = std::filesystem;

using ReadArchive = std::unique_ptr<archive, decltype(&archive_read_free)>;
using DiskWriter = std::unique_ptr<archive, decltype(&archive_write_free)>;

// Belt and braces: the entry names are checked here, and libarchive is told to refuse ".."
// too and never to write through a link. Entries are written to absolute paths under the
// destination (the process's working folder is not ours to change), so libarchive's own
// refusal of absolute paths cannot be used; the names are relative before they are joined.
constexpr int extractFlags = ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_PERM |
                             ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                             ARCHIVE_EXTRACT_NO_OVERWRITE;

UpdateFailure archiveFailure(const std::string& what, archive* handle) {
    const char* reason = archive_error_string(handle);
    return UpdateFailure{"the update archive " + what +
                         (reason != nullptr ? std::string(": ") + reason : std::string())};
}

// Owner bits stay as packed (an executable stays executable); nobody else may write, and
// set-user-id, set-group-id and sticky bits never come from a download.
mode_t safePermissions(mode_t packed, bool isDirectory) {
    const mode_t kept = packed & 0755;
    return isDirectory ? kept | 0700 : kept | 0600;
}

std::optional<UpdateFailure> checkEntry(archive_entry* entry, const fs::path& relative) {
    const std::string shown = relative.string();
    if (archive_entry_hardlink(entry) != nullptr) {
        return UpdateFailure{"the update archive holds a hard link: " + shown};
    }
    switch (archive_entry_filetype(entry)) {
        case AE_IFREG:
        case AE_IFDIR: return std::nullopt;
        case AE_IFLNK: {
            const char* target = archive_entry_symlink(entry);
            if (target == nullptr || !isInwardLink(relative, target)) {
                return UpdateFailure{"the update archive holds a link that points outside: " +
                                     shown};
            }
            return std::nullopt;
        }
        default: return UpdateFailure{"the update archive holds a special file: " + shown};
    }
}

// Counts what is written, since a zip entry need not state its size up front.
std::optional<UpdateFailure> copyData(archive* reader, archive* writer,
                                      std::uint64_t& unpackedBytes) {
    const void* block = nullptr;
    size_t size = 0;
    la_int64_t offset = 0;
    for (;;) {
        const int status = archive_read_data_block(reader, &block, &size, &offset);
        if (status == ARCHIVE_EOF) {
            return std::nullopt;
        }
        if (status < ARCHIVE_WARN) {
            return archiveFailure("cannot be read", reader);
        }
        unpackedBytes += size;
        if (unpackedBytes > maximumUnpackedBytes) {
            return UpdateFailure{"the update archive unpacks to more than 2 GiB"};
        }
        if (archive_write_data_block(writer, block, size, offset) < ARCHIVE_WARN) {
            return archiveFailure("cannot be written", writer);
        }
    }
}

}  // namespace

std::optional<fs::path> safeEntryPath(std::string_view name) {
    if (name.empty() || name.front() == '/') {
        return std::nullopt;
    }
    fs::path relative;
    for (const fs::path& part : fs::path(name)) {
        const std::string text = part.string();
        if (text == "..") {
            return std::nullopt;
        }
        if (text.empty() || text == ".") {
            continue;
        }
        relative /= part;
    }
    if (relative.empty()) {
        return std::nullopt;
    }
    return relative;
}

bool isInwardLink(const fs::path& entry, std::string_view target) {
    if (target.empty() || target.front() == '/') {
        return false;
    }
    // Walk from the link's folder; climbing above the destination at any point is out, even
    // if a later component would come back in (the folder above is not ours to look through).
    int depth = 0;
    for (const fs::path& part : entry.parent_path()) {
        depth += part == "." ? 0 : 1;
    }
    for (const fs::path& part : fs::path(target)) {
        const std::string text = part.string();
        if (text == "..") {
            if (--depth < 0) {
                return false;
            }
        } else if (!text.empty() && text != ".") {
            ++depth;
        }
    }
    return true;
}

std::optional<UpdateFailure> unpack(std::string_view bytes, const fs::path& folder) {
    // The link check looks at every folder of the path written to, so the destination itself
    // must be written without links (a home folder reached through one is common).
    std::error_code error;
    const fs::path destination = fs::canonical(folder, error);
    if (error) {
        return UpdateFailure{"cannot unpack into " + folder.string() + ": " + error.message()};
    }
    ReadArchive reader(archive_read_new(), &archive_read_free);
    DiskWriter writer(archive_write_disk_new(), &archive_write_free);
    if (!reader || !writer) {
        return UpdateFailure{"the update archive cannot be opened: out of memory"};
    }
    archive_read_support_format_tar(reader.get());
    archive_read_support_format_zip(reader.get());
    // Only the compressions libarchive handles itself: no external helper programs.
    archive_read_support_filter_xz(reader.get());
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_filter_bzip2(reader.get());
    archive_read_support_filter_zstd(reader.get());
    archive_write_disk_set_options(writer.get(), extractFlags);
    if (archive_read_open_memory(reader.get(), bytes.data(), bytes.size()) != ARCHIVE_OK) {
        return archiveFailure("is not a readable archive", reader.get());
    }

    std::uint64_t entries = 0;
    std::uint64_t unpackedBytes = 0;
    archive_entry* entry = nullptr;
    for (;;) {
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF) {
            break;
        }
        if (status < ARCHIVE_WARN) {
            return archiveFailure("is damaged", reader.get());
        }
        const char* name = archive_entry_pathname(entry);
        const std::optional<fs::path> relative =
            name != nullptr ? safeEntryPath(name) : std::nullopt;
        if (!relative) {
            return UpdateFailure{"the update archive holds a path outside its folder: " +
                                 std::string(name != nullptr ? name : "(no name)")};
        }
        if (auto refused = checkEntry(entry, *relative)) {
            return refused;
        }
        if (++entries > maximumEntries) {
            return UpdateFailure{"the update archive holds too many files"};
        }
        const bool isDirectory = archive_entry_filetype(entry) == AE_IFDIR;
        archive_entry_set_perm(entry, safePermissions(archive_entry_perm(entry), isDirectory));
        archive_entry_set_pathname(entry, (destination / *relative).c_str());
        if (archive_write_header(writer.get(), entry) < ARCHIVE_WARN) {
            return archiveFailure("cannot be unpacked", writer.get());
        }
        if (archive_entry_filetype(entry) == AE_IFREG) {
            if (auto failed = copyData(reader.get(), writer.get(), unpackedBytes)) {
                return failed;
            }
        }
        if (archive_write_finish_entry(writer.get()) < ARCHIVE_WARN) {
            return archiveFailure("cannot be unpacked", writer.get());
        }
    }
    if (archive_write_close(writer.get()) < ARCHIVE_WARN) {
        return archiveFailure("cannot be unpacked", writer.get());
    }
    return std::nullopt;
}

}  // namespace corvane::ArchiveUnpacker
