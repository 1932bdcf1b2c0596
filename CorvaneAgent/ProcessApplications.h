#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "CorvaneAgent/ProcessMetric.h"
#include "CorvaneShared/DesktopApplications.h"
#include "Platform/ProcessCommands.h"

namespace corvane {

/// Which installed desktop application each process of the top lists belongs to, remembered
/// per process so that a row redrawn every refresh costs one map lookup. Main thread only.
class ProcessApplications {
public:
    using LoadIndex = std::function<DesktopApplicationIndex()>;

    /// `loadIndex` reads the installed applications; it runs at the first lookup.
    ProcessApplications(std::unique_ptr<ProcessCommands> commands, LoadIndex loadIndex);

    /// The application `process` runs; null for a command-line program, a kernel thread or a
    /// process that is gone. Valid until the next `reload`.
    const DesktopApplication* application(const ProcessMetric& process);

    /// Reads the installed applications again at the next lookup and forgets every answer.
    void reload();

private:
    /// A process is known by its pid and name, so a reused pid is looked at again.
    using ProcessKey = std::pair<std::int32_t, std::string>;

    std::unique_ptr<ProcessCommands> commands;
    LoadIndex loadIndex;
    std::optional<DesktopApplicationIndex> index;
    std::map<ProcessKey, const DesktopApplication*> answers;
};

}  // namespace corvane
