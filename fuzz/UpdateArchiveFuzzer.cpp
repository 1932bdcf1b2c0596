// What an update archive can carry: its entries' names and link targets, the base64 of its
// key and signature, and the archive itself unpacked into a folder. The first byte picks which.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "Platform/Updates/ArchiveSignature.h"
#include "Platform/Updates/ArchiveUnpacker.h"
#include "fuzz/FuzzSupport.h"

namespace fs = std::filesystem;

namespace {

using namespace corvane;
using fuzz::require;

bool climbs(const fs::path& path) {
    for (const fs::path& part : path) {
        if (part == "..") {
            return true;
        }
    }
    return false;
}

/// An entry name and a link target, split at the first NUL.
void checkNames(std::string_view text) {
    const auto split = text.find('\0');
    const std::string_view name = text.substr(0, split);
    const std::string_view target =
        split == std::string_view::npos ? std::string_view() : text.substr(split + 1);
    const auto entry = ArchiveUnpacker::safeEntryPath(name);
    if (!entry) {
        return;
    }
    require(!entry->empty() && entry->is_relative() && !climbs(*entry),
            "entry: a safe path is relative and never climbs");
    require(ArchiveUnpacker::safeEntryPath(entry->string()) == entry,
            "entry: a safe path is its own safe path");
    if (ArchiveUnpacker::isInwardLink(*entry, target)) {
        const fs::path resolved = (entry->parent_path() / fs::path(target)).lexically_normal();
        require(fs::path(target).is_relative() && !climbs(resolved),
                "link: an inward link resolves inside the folder");
    }
}

void checkBase64(std::string_view text) {
    const std::string encoded = ArchiveSignature::encodeBase64(text);
    require(ArchiveSignature::decodeBase64(encoded, text.size()) == std::string(text),
            "base64: what is encoded decodes back");
    for (const std::size_t length : {ArchiveSignature::publicKeyBytes,
                                     ArchiveSignature::signatureBytes, text.size() * 3 / 4}) {
        if (const auto decoded = ArchiveSignature::decodeBase64(text, length)) {
            require(decoded->size() == length, "base64: decoded to exactly the length asked");
        }
    }
    // Input of no key's making cannot pass as signed by one.
    const auto third = text.size() / 3;
    require(ArchiveSignature::verify(text.substr(0, third), text.substr(third, third),
                                     text.substr(2 * third))
                .has_value(),
            "signature: random bytes are never a valid signature");
}

/// Everything under `folder` is a plain file, folder or inward link without set-id bits.
void checkUnpacked(const fs::path& folder) {
    std::error_code error;
    for (auto walk = fs::recursive_directory_iterator(folder, error);
         !error && walk != fs::recursive_directory_iterator(); walk.increment(error)) {
        const fs::path& path = walk->path();
        struct stat status {};
        require(::lstat(path.c_str(), &status) == 0, "unpack: what the walk lists exists");
        require(S_ISREG(status.st_mode) || S_ISDIR(status.st_mode) || S_ISLNK(status.st_mode),
                "unpack: only files, folders and links");
        require((status.st_mode & (S_ISUID | S_ISGID)) == 0, "unpack: no set-id bits");
        if (S_ISLNK(status.st_mode)) {
            const fs::path relative = path.lexically_relative(folder);
            require(ArchiveUnpacker::isInwardLink(relative, fs::read_symlink(path).string()),
                    "unpack: every link points inward");
        }
    }
}

/// A folder of this run's own around the destination, so that anything written beside the
/// destination shows; removed when the run ends.
struct Cage {
    fs::path path = fs::temp_directory_path() / ("corvane-fuzz-" + std::to_string(::getpid()));
    Cage() { fs::create_directories(path); }
    ~Cage() {
        std::error_code error;
        fs::remove_all(path, error);
    }
};

void checkUnpack(std::string_view bytes) {
    static const Cage cage;
    const fs::path folder = cage.path / "bundle";
    fs::create_directory(folder);
    ArchiveUnpacker::unpack(bytes, folder);
    checkUnpacked(folder);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(cage.path, error)) {
        require(entry.path() == folder, "unpack: nothing written beside the folder");
    }
    fs::remove_all(folder, error);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto text = fuzz::textOf(data + 1, size - 1);
    switch (data[0] % 3) {
        case 0: checkUnpack(text); break;
        case 1: checkNames(text); break;
        default: checkBase64(text); break;
    }
    return 0;
}
