#include "CorvaneAgent/ProcessApplications.h"

namespace corvane {

namespace {

// Far above the processes the top lists show over a session's worth of refreshes; forgetting
// all at once only costs looking the current ones up again.
constexpr std::size_t maximumAnswers = 1024;

}  // namespace

ProcessApplications::ProcessApplications(std::unique_ptr<ProcessCommands> commands,
                                         LoadIndex loadIndex)
    : commands(std::move(commands)), loadIndex(std::move(loadIndex)) {}

const DesktopApplication* ProcessApplications::application(const ProcessMetric& process) {
    ProcessKey key{process.pid, process.name};
    if (const auto known = answers.find(key); known != answers.end()) {
        return known->second;
    }
    if (!index) {
        index = loadIndex ? loadIndex() : DesktopApplicationIndex();
    }
    const std::optional<ProcessCommand> command = commands->command(process.pid);
    if (!command) {
        // Gone, or not yet readable: nothing worth remembering under this pid.
        return nullptr;
    }
    const DesktopApplication* application = index->match(process.name, *command);
    if (answers.size() >= maximumAnswers) {
        answers.clear();
    }
    answers.emplace(std::move(key), application);
    return application;
}

void ProcessApplications::reload() {
    answers.clear();
    index.reset();
}

}  // namespace corvane
