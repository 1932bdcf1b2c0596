#pragma once

#include <dirent.h>

#include <optional>
#include <string_view>

namespace corvane {

/// The entries of one directory, read one at a time with readdir(3), in the file system's
/// order; "." and ".." are left out. The directory stays open for the listing's lifetime and is
/// closed on every way out. One that cannot be opened lists nothing. Throws nothing, unlike
/// std::filesystem::directory_iterator, whose increment throws on a read error. Move-only; one
/// thread at a time.
class DirectoryListing {
public:
    explicit DirectoryListing(const char* path);
    DirectoryListing(DirectoryListing&& other) noexcept;
    DirectoryListing& operator=(DirectoryListing&& other) noexcept;
    DirectoryListing(const DirectoryListing&) = delete;
    DirectoryListing& operator=(const DirectoryListing&) = delete;
    ~DirectoryListing();

    bool isOpen() const { return directory != nullptr; }

    /// The next entry's name; absent at the end, or when the directory did not open or a read
    /// fails. The view is valid until the next call.
    [[nodiscard]] std::optional<std::string_view> next();

    /// The open directory's descriptor, for openat(2) relative to it; -1 when it did not open.
    int descriptor() const;

private:
    DIR* directory = nullptr;
};

}  // namespace corvane
