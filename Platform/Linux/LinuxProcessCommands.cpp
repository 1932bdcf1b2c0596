#include "Platform/Linux/LinuxProcessCommands.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "Foundation/BoundedFileRead.h"
#include "Foundation/FileDescriptor.h"

namespace corvane {

namespace {

// The program and its first arguments are all a lookup needs; a command line can be megabytes.
constexpr std::size_t commandLineLimitBytes = 4096;

// The kernel appends this to the link of an executable that was replaced or removed while it
// runs, which is what a package upgrade does to every running program it updates.
constexpr std::string_view deletedSuffix = " (deleted)";

std::string readExecutable(const std::filesystem::path& link) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        return {};
    }
    std::string executable(target.data(), static_cast<std::size_t>(length));
    if (executable.ends_with(deletedSuffix)) {
        executable.resize(executable.size() - deletedSuffix.size());
    }
    return executable;
}

std::optional<std::vector<std::string>> readArguments(const std::filesystem::path& file) {
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!descriptor.isOpen()) {
        return std::nullopt;
    }
    const std::optional<std::string> bytes = readAtMost(descriptor.get(), commandLineLimitBytes);
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<std::string> arguments;
    std::string_view rest = *bytes;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\0');
        arguments.emplace_back(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    }
    return arguments;
}

}  // namespace

LinuxProcessCommands::LinuxProcessCommands(const std::filesystem::path& procRoot)
    : root(procRoot) {}

std::optional<ProcessCommand> LinuxProcessCommands::command(std::int32_t pid) {
    const std::filesystem::path directory = root / std::to_string(pid);
    std::optional<std::vector<std::string>> arguments = readArguments(directory / "cmdline");
    // Another user's exe link is unreadable while its cmdline is not; a kernel thread has an
    // empty cmdline and no exe. Only a process that is gone has neither.
    std::string executable = readExecutable(directory / "exe");
    if (!arguments && executable.empty()) {
        return std::nullopt;
    }
    return ProcessCommand{.executable = std::move(executable),
                          .arguments = std::move(arguments).value_or(std::vector<std::string>{})};
}

}  // namespace corvane
