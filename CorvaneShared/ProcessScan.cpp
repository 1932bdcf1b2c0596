#include "CorvaneShared/ProcessScan.h"

#include <algorithm>
#include <iterator>

namespace corvane::ProcessScan {

std::vector<Entry> runningAgents(const ProcessTable& table, std::uint32_t user) {
    std::vector<Entry> agents;
    // On the path alone, deliberately: a copy installed elsewhere is still a copy.
    std::ranges::copy_if(table.processesOf(user), std::back_inserter(agents),
                         [](const Entry& entry) { return entry.path.ends_with(agentPathSuffix); });
    return agents;
}

}  // namespace corvane::ProcessScan
