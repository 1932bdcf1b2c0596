#include "Platform/Linux/JournalLog.h"

#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

// sd-journal drops a line silently when journald is not running (a container, a session
// without systemd); look for its socket so those lines reach standard error instead.
bool journalIsRunning() {
    return ::access("/run/systemd/journal/socket", F_OK) == 0;
}

bool isToldToUseStandardError() {
    const char* destination = std::getenv(JournalLog::destinationVariable);
    return destination != nullptr && std::string_view(destination) == "stderr";
}

}  // namespace

JournalLog::JournalLog(std::string subsystem, std::string category)
    : subsystem(std::move(subsystem)),
      category(std::move(category)),
      toJournal(journalIsRunning() && !isToldToUseStandardError()) {}

void JournalLog::write(LogLevel level, std::string_view message) {
    const int priority = level == LogLevel::error ? LOG_ERR : LOG_NOTICE;
    const int length = static_cast<int>(message.size());
    if (toJournal &&
        sd_journal_send("MESSAGE=%.*s", length, message.data(), "PRIORITY=%i", priority,
                        "SYSLOG_IDENTIFIER=corvane-agent", "CORVANE_SUBSYSTEM=%s",
                        subsystem.c_str(), "CORVANE_CATEGORY=%s", category.c_str(), nullptr) >= 0) {
        return;
    }
    std::fprintf(stderr, "corvane-agent[%s]: %.*s\n", category.c_str(), length, message.data());
}

}  // namespace corvane
