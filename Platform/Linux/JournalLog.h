#pragma once

#include <string>

#include "Platform/Log.h"

namespace corvane {

/// Log lines to the systemd journal under SYSLOG_IDENTIFIER=corvane-agent (`journalctl -t
/// corvane-agent`), with the subsystem and the category as the fields CORVANE_SUBSYSTEM and
/// CORVANE_CATEGORY (`journalctl CORVANE_CATEGORY=updates`); to standard error, prefixed with the
/// category, when there is no journal or when CORVANE_LOG is "stderr". Standard lines go at
/// notice priority, errors at err. Main thread.
class JournalLog final : public Log {
public:
    /// Set to "stderr", sends the lines to standard error even when journald runs: for a
    /// terminal session, and for tests that read what the agent said.
    static constexpr const char* destinationVariable = "CORVANE_LOG";

    JournalLog(std::string subsystem, std::string category);

    void write(LogLevel level, std::string_view message) override;

private:
    std::string subsystem;
    std::string category;
    bool toJournal;
};

}  // namespace corvane
