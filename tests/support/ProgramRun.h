#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace corvane::testing {

/// What a program run through the shell printed, and how it ended.
struct ProgramRun {
    /// The exit status; -1 when the program did not exit normally or could not start.
    int status = -1;
    std::string output;
    std::string errors;
};

/// The whole of a file; empty when it cannot be read.
inline std::string readAll(const std::filesystem::path& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Runs `command` through the shell; standard error goes through `errorsFile`.
inline ProgramRun runCommand(const std::string& command, const std::filesystem::path& errorsFile) {
    ProgramRun run;
    FILE* pipe = ::popen((command + " 2>" + errorsFile.string()).c_str(), "r");
    if (pipe == nullptr) {
        return run;
    }
    char buffer[4096];
    while (std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe)) {
        run.output.append(buffer, count);
    }
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.errors = readAll(errorsFile);
    return run;
}

}  // namespace corvane::testing
