#include "Platform/Linux/LinuxProcessTable.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "Foundation/DirectoryListing.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/KernelFileReader.h"
#include "Platform/Linux/ProcPidStat.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

// The kernel appends this to the exe link of a process whose file was removed or replaced
// since it started, as an update or a rebuild does; the process still runs that program.
constexpr std::string_view deletedMark = " (deleted)";

std::optional<std::string> linkTarget(const fs::path& link) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        return std::nullopt;
    }
    std::string_view path(target.data(), static_cast<std::size_t>(length));
    if (path.ends_with(deletedMark)) {
        path.remove_suffix(deletedMark.size());
    }
    return std::string(path);
}

// cmdline holds each word followed by a NUL, so words may hold blanks.
std::vector<std::string> commandWords(std::string_view commandLine) {
    std::vector<std::string> words;
    while (!commandLine.empty()) {
        const std::size_t end = std::min(commandLine.find('\0'), commandLine.size());
        words.emplace_back(commandLine.substr(0, end));
        commandLine.remove_prefix(std::min(end + 1, commandLine.size()));
    }
    return words;
}

std::optional<std::string> executableOf(const fs::path& process,
                                        const std::vector<std::string>& words) {
    if (auto target = linkTarget(process / "exe")) {
        return target;
    }
    if (words.empty() || words.front().empty()) {
        return std::nullopt;
    }
    return words.front();
}

std::optional<std::uint32_t> ownerOf(const fs::path& process, KernelFileReader& reader) {
    if (const auto status = reader.read((process / "status").c_str())) {
        return parseStatusUid(*status);
    }
    struct stat info {};
    if (::stat(process.c_str(), &info) != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(info.st_uid);
}

std::optional<std::chrono::system_clock::time_point> startOf(const fs::path& process,
                                                             KernelFileReader& reader,
                                                             std::optional<std::int64_t> bootTime,
                                                             long ticksPerSecond) {
    if (!bootTime || ticksPerSecond <= 0) {
        return std::nullopt;
    }
    const auto text = reader.read((process / "stat").c_str());
    const auto stat = text ? parseProcPidStat(*text) : std::nullopt;
    if (!stat) {
        return std::nullopt;
    }
    // Whole ticks, kept exact, so that two copies started in the same tick compare equal.
    const auto ticks = static_cast<std::int64_t>(stat->startTime);
    const auto sinceBoot =
        std::chrono::seconds(ticks / ticksPerSecond) +
        std::chrono::nanoseconds((ticks % ticksPerSecond) * 1'000'000'000 / ticksPerSecond);
    return std::chrono::system_clock::time_point(std::chrono::seconds(*bootTime)) +
           std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceBoot);
}

}  // namespace

std::optional<std::int64_t> parseBootTime(std::string_view procStat) {
    while (!procStat.empty()) {
        std::string_view line = text::takeLine(procStat);
        if (text::takeField(line) == "btime") {
            return parseNumber<std::int64_t>(text::trim(line));
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> parseStatusUid(std::string_view status) {
    while (!status.empty()) {
        std::string_view line = text::takeLine(status);
        if (text::takeField(line) == "Uid:") {
            return parseNumber<std::uint32_t>(text::takeField(line));
        }
    }
    return std::nullopt;
}

LinuxProcessTable::LinuxProcessTable(fs::path procfs, long ticksPerSecond)
    : procfs(std::move(procfs)),
      ticksPerSecond(ticksPerSecond > 0 ? ticksPerSecond : ::sysconf(_SC_CLK_TCK)) {}

std::vector<ProcessRecord> LinuxProcessTable::processesOf(std::uint32_t user) const {
    KernelFileReader reader;
    const auto procStat = reader.read((procfs / "stat").c_str());
    const std::optional<std::int64_t> bootTime = procStat ? parseBootTime(*procStat) : std::nullopt;

    std::vector<ProcessRecord> records;
    DirectoryListing listing(procfs.c_str());
    while (const auto name = listing.next()) {
        const auto pid = parseNumber<std::int32_t>(*name);
        if (!pid || *pid <= 0) {
            continue;
        }
        const fs::path process = procfs / *name;
        if (ownerOf(process, reader) != user) {
            continue;
        }
        const auto commandLine = reader.read((process / "cmdline").c_str());
        std::vector<std::string> words =
            commandLine ? commandWords(*commandLine) : std::vector<std::string>();
        auto path = executableOf(process, words);
        if (!path) {
            continue;
        }
        if (!words.empty()) {
            words.erase(words.begin());
        }
        records.push_back({.pid = *pid,
                           .started = startOf(process, reader, bootTime, ticksPerSecond),
                           .path = std::move(*path),
                           .arguments = std::move(words)});
    }
    std::ranges::sort(records, {}, &ProcessRecord::pid);
    return records;
}

}  // namespace corvane
