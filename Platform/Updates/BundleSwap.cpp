#include "Platform/Updates/BundleSwap.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "Foundation/DirectoryListing.h"

namespace corvane::BundleSwap {

namespace {

namespace fs = std::filesystem;

std::string reason(int error) {
    return std::strerror(error);
}

}  // namespace

Renames systemRenames() {
    return {
        .exchange =
            [](const fs::path& first, const fs::path& second) {
                return ::renameat2(AT_FDCWD, first.c_str(), AT_FDCWD, second.c_str(),
                                   RENAME_EXCHANGE) == 0
                           ? 0
                           : errno;
            },
        .move =
            [](const fs::path& from, const fs::path& to) {
                return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
            },
    };
}

std::variant<fs::path, UpdateFailure> makeStagingFolder(const fs::path& bundle) {
    std::string pattern =
        (bundle.parent_path() / ("." + bundle.filename().string() + ".update-XXXXXX")).string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        return UpdateFailure{"cannot write beside " + bundle.string() + ": " + reason(errno)};
    }
    return fs::path(pattern);
}

std::variant<fs::path, UpdateFailure> unpackedBundle(const fs::path& staging) {
    std::optional<fs::path> found;
    DirectoryListing entries(staging.c_str());
    while (const std::optional<std::string_view> name = entries.next()) {
        const fs::path entry = staging / *name;
        std::error_code error;
        // A symbolic link to a folder is not a folder here.
        const bool isApp = entry.extension() == ".app" &&
                           fs::is_directory(fs::symlink_status(entry, error)) && !error;
        if (!isApp || found) {
            return UpdateFailure{"the update archive does not hold exactly one .app folder"};
        }
        found = entry;
    }
    if (!entries.isOpen() || !found) {
        return UpdateFailure{"the update archive does not hold exactly one .app folder"};
    }
    return *found;
}

std::optional<UpdateFailure> swap(const fs::path& installed, const fs::path& replacement,
                                  const Renames& renames) {
    const int exchanged = renames.exchange(replacement, installed);
    if (exchanged == 0) {
        return std::nullopt;
    }
    // File systems without an atomic exchange answer EINVAL (or ENOSYS on old kernels); any
    // other failure means the rename itself is impossible, and nothing has moved.
    if (exchanged != EINVAL && exchanged != ENOSYS) {
        return UpdateFailure{"cannot replace " + installed.string() + ": " + reason(exchanged)};
    }
    const fs::path aside =
        replacement.parent_path() / ("previous-" + installed.filename().string());
    if (const int movedAside = renames.move(installed, aside); movedAside != 0) {
        return UpdateFailure{"cannot move " + installed.string() + " aside: " + reason(movedAside)};
    }
    if (const int movedIn = renames.move(replacement, installed); movedIn != 0) {
        if (const int restored = renames.move(aside, installed); restored != 0) {
            return UpdateFailure{"cannot move the new bundle in (" + reason(movedIn) +
                                 ") nor the old one back (" + reason(restored) + "); it is at " +
                                 aside.string()};
        }
        return UpdateFailure{"cannot move the new bundle in: " + reason(movedIn)};
    }
    // Callers find the old bundle where the new one was, as after an exchange.
    renames.move(aside, replacement);
    return std::nullopt;
}

void removeFolder(const fs::path& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

}  // namespace corvane::BundleSwap
