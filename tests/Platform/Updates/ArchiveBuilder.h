#pragma once

#include <archive.h>
#include <archive_entry.h>
#include <sodium.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::testing {

/// One entry of an archive a test builds.
struct ArchiveEntry {
    std::string path;
    /// AE_IFREG, AE_IFDIR, AE_IFLNK, AE_IFIFO, …
    unsigned type = AE_IFREG;
    std::string content;
    /// The link target of AE_IFLNK; for a hard link, set `hardlink` instead.
    std::string link;
    std::string hardlink;
    int permissions = 0644;
};

/// A tar archive of `entries` in memory, compressed with xz unless told otherwise.
inline std::string buildArchive(const std::vector<ArchiveEntry>& entries, bool compress = true) {
    std::string bytes(1 << 20, '\0');
    size_t used = 0;
    archive* writer = archive_write_new();
    archive_write_set_format_pax_restricted(writer);
    if (compress) {
        archive_write_add_filter_xz(writer);
    }
    archive_write_open_memory(writer, bytes.data(), bytes.size(), &used);
    for (const ArchiveEntry& item : entries) {
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, item.path.c_str());
        archive_entry_set_filetype(entry, item.type);
        archive_entry_set_perm(entry, item.permissions);
        if (!item.link.empty()) {
            archive_entry_set_symlink(entry, item.link.c_str());
        }
        if (!item.hardlink.empty()) {
            archive_entry_set_hardlink(entry, item.hardlink.c_str());
        }
        archive_entry_set_size(entry, item.type == AE_IFREG && item.hardlink.empty()
                                          ? static_cast<la_int64_t>(item.content.size())
                                          : 0);
        archive_write_header(writer, entry);
        if (item.type == AE_IFREG && !item.content.empty()) {
            archive_write_data(writer, item.content.data(), item.content.size());
        }
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    bytes.resize(used);
    return bytes;
}

/// An Ed25519 key pair made for one test, with base64 texts as the feed and bundle carry them.
struct TestKeys {
    TestKeys() {
        if (sodium_init() < 0) {
            std::abort();
        }
        crypto_sign_keypair(publicKey, secretKey);
    }

    std::string publicBase64() const { return base64(publicKey, sizeof publicKey); }

    std::string sign(std::string_view message) const {
        unsigned char signature[crypto_sign_BYTES];
        crypto_sign_detached(signature, nullptr,
                             reinterpret_cast<const unsigned char*>(message.data()), message.size(),
                             secretKey);
        return base64(signature, sizeof signature);
    }

    static std::string base64(const unsigned char* bytes, size_t size) {
        std::string text(sodium_base64_ENCODED_LEN(size, sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(text.data(), text.size(), bytes, size, sodium_base64_VARIANT_ORIGINAL);
        text.resize(text.size() - 1);
        return text;
    }

    unsigned char publicKey[crypto_sign_PUBLICKEYBYTES];
    unsigned char secretKey[crypto_sign_SECRETKEYBYTES];
};

}  // namespace corvane::testing
