#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// One running process as the process table shows it.
struct ProcessRecord {
    std::int32_t pid = 0;
    /// When the process started; absent when that cannot be read.
    std::optional<std::chrono::system_clock::time_point> started;
    /// The file the process runs.
    std::string path;
    /// The arguments after the program's name; empty when its command line cannot be read.
    std::vector<std::string> arguments;

    friend bool operator==(const ProcessRecord&, const ProcessRecord&) = default;
};

/// The processes running on this machine. Any thread.
class ProcessTable {
public:
    virtual ~ProcessTable() = default;
    /// Every process of the account `user` whose executable can be found, by ascending pid.
    /// A process that cannot be read is left out; a list that cannot be read is empty.
    virtual std::vector<ProcessRecord> processesOf(std::uint32_t user) const = 0;
};

}  // namespace corvane
