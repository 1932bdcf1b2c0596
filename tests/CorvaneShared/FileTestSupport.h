#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace corvane::testing {

/// A fresh folder under the system's temporary directory, removed with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvane-test-XXXXXX");
        if (::mkdtemp(pattern.data()) != nullptr) {
            root = pattern;
        }
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    const std::filesystem::path& path() const { return root; }
    std::filesystem::path operator/(std::string_view name) const { return root / name; }

private:
    std::filesystem::path root;
};

/// The whole file, or absent when it cannot be opened.
inline std::optional<std::string> readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

/// Replaces the file's content in place, as a text editor that does not rename would.
inline void writeFile(const std::filesystem::path& path, std::string_view content) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << content;
}

/// Names in `directory` that start with `prefix`.
inline std::set<std::string> namesStartingWith(const std::filesystem::path& directory,
                                               std::string_view prefix) {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
        std::string name = entry.path().filename().string();
        if (name.starts_with(prefix)) {
            names.insert(std::move(name));
        }
    }
    return names;
}

/// Runs `body` in a forked child and answers its exit status (-1 when it did not exit
/// normally). The caller must have no other threads running.
inline int exitStatusOfChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(body());
    }
    if (child < 0) {
        return -1;
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

}  // namespace corvane::testing
