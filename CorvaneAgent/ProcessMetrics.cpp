#include "CorvaneAgent/ProcessMetrics.h"

#include <algorithm>
#include <utility>

#include "CorvaneAgent/MemoryUsage.h"

namespace corvane {

namespace {

// Below this, a rate would be a division by a near-zero interval: two scans that close are
// treated as a millisecond apart.
constexpr double minimumElapsedSeconds = 0.001;

// The figures of one process, without its name: the name is copied only for the rows listed.
struct Figures {
    double cpu = 0;
    std::uint64_t memory = 0;
    std::uint64_t diskRead = 0;
    std::uint64_t diskWrite = 0;
};

// The figures of a process that was also in the previous snapshot, as `before`.
Figures figuresBetween(const ProcessSample& before, const ProcessSample& sample,
                       std::optional<double> elapsedSeconds, double elapsed,
                       double nanosecondsPerTick) {
    Figures figures{.memory = sample.footprintBytes};
    if (elapsedSeconds && sample.cpuTicks >= before.cpuTicks) {
        const auto ticks = static_cast<double>(sample.cpuTicks - before.cpuTicks);
        figures.cpu = ticks * nanosecondsPerTick / (elapsed * 1e9) * 100.0;
    }
    // Truncated to whole bytes, and 0 for a counter that went backwards, as a source without
    // start times shows a reused pid.
    figures.diskRead = pagingRate(before.diskRead, sample.diskRead, elapsed);
    figures.diskWrite = pagingRate(before.diskWrite, sample.diskWrite, elapsed);
    return figures;
}

// The first `ProcessTopLists::length` rows of a stable descending sort by `key`, without
// sorting everything: an entry goes after every listed entry whose key is at least its own,
// so ties keep snapshot order.
template <typename Key>
std::vector<ProcessMetric> topRows(const std::vector<ProcessSample>& samples,
                                   const std::vector<Figures>& figures, Key key) {
    std::vector<std::size_t> top;
    top.reserve(ProcessTopLists::length + 1);
    for (std::size_t index = 0; index < figures.size(); ++index) {
        const auto value = key(figures[index]);
        const auto position = std::find_if(top.begin(), top.end(), [&](std::size_t listed) {
            return key(figures[listed]) < value;
        });
        if (position == top.end() && top.size() == ProcessTopLists::length) {
            continue;
        }
        top.insert(position, index);
        if (top.size() > ProcessTopLists::length) {
            top.pop_back();
        }
    }
    std::vector<ProcessMetric> rows;
    rows.reserve(top.size());
    for (const auto index : top) {
        const auto& figure = figures[index];
        rows.push_back({.pid = samples[index].pid,
                        .name = samples[index].name,
                        .cpu = figure.cpu,
                        .memory = figure.memory,
                        .diskRead = figure.diskRead,
                        .diskWrite = figure.diskWrite});
    }
    return rows;
}

}  // namespace

ProcessTopLists rankProcesses(const std::vector<ProcessSample>& current,
                              const ProcessSamplesByPid& previous,
                              std::optional<double> elapsedSeconds, double nanosecondsPerTick) {
    const double elapsed = std::max(elapsedSeconds.value_or(0.0), minimumElapsedSeconds);
    ProcessTopLists lists;
    std::vector<Figures> figures;
    figures.reserve(current.size());
    for (const auto& sample : current) {
        const auto found = previous.find(sample.pid);
        // A process new since the last scan has nothing to compare with: no CPU, no disk. So
        // has one that took over the pid of a process that exited, whose counters may well be
        // larger than the old ones and would give one wrong rate.
        const bool isNew = found == previous.end() || found->second.startTime != sample.startTime;
        figures.push_back(isNew ? Figures{.memory = sample.footprintBytes}
                                : figuresBetween(found->second, sample, elapsedSeconds, elapsed,
                                                 nanosecondsPerTick));
        lists.diskReadPerSecond = saturatingAdd(lists.diskReadPerSecond, figures.back().diskRead);
        lists.diskWritePerSecond =
            saturatingAdd(lists.diskWritePerSecond, figures.back().diskWrite);
    }
    lists.topCPUProcesses = topRows(current, figures, [](const Figures& f) { return f.cpu; });
    lists.topMemoryProcesses = topRows(current, figures, [](const Figures& f) { return f.memory; });
    lists.topDiskProcesses = topRows(
        current, figures, [](const Figures& f) { return saturatingAdd(f.diskRead, f.diskWrite); });
    return lists;
}

ProcessSamplesByPid samplesByPid(std::vector<ProcessSample> samples) {
    ProcessSamplesByPid byPid;
    byPid.reserve(samples.size());
    for (auto& sample : samples) {
        const auto pid = sample.pid;
        byPid.insert_or_assign(pid, std::move(sample));
    }
    return byPid;
}

}  // namespace corvane
