#include "Foundation/DirectoryListing.h"

#include <utility>

namespace corvane {

DirectoryListing::DirectoryListing(const char* path) : directory(::opendir(path)) {}

DirectoryListing::DirectoryListing(DirectoryListing&& other) noexcept
    : directory(std::exchange(other.directory, nullptr)) {}

DirectoryListing& DirectoryListing::operator=(DirectoryListing&& other) noexcept {
    if (this != &other) {
        if (directory != nullptr) {
            ::closedir(directory);
        }
        directory = std::exchange(other.directory, nullptr);
    }
    return *this;
}

DirectoryListing::~DirectoryListing() {
    if (directory != nullptr) {
        ::closedir(directory);
    }
}

std::optional<std::string_view> DirectoryListing::next() {
    if (directory == nullptr) {
        return std::nullopt;
    }
    while (const dirent* entry = ::readdir(directory)) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..") {
            return name;
        }
    }
    return std::nullopt;
}

int DirectoryListing::descriptor() const {
    return directory != nullptr ? ::dirfd(directory) : -1;
}

}  // namespace corvane
