#include "Platform/Linux/CPUTopology.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <map>
#include <string>

#include "Foundation/DirectoryListing.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/KernelFileReader.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::string_view cpuPrefix = "cpu";

// Fastest first: the P-cores, the E-cores, then the low-power E-cores of the SoC tile.
constexpr std::array<std::pair<const char*, const char*>, 3> hybridPMUs = {{
    {"devices/cpu_core/cpus", "Performance"},
    {"devices/cpu_atom/cpus", "Efficiency"},
    {"devices/cpu_lowpower/cpus", "Low Power"},
}};

std::optional<std::uint32_t> parseCPUNumber(std::string_view field) {
    const auto number = parseNumber<std::uint64_t>(field);
    if (!number || *number > maxCPUNumber) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

// One class of cores: its name and its CPUs.
using CoreClass = std::pair<std::optional<std::string>, std::vector<std::uint32_t>>;

// Levels with at least one CPU, in the order given; a single class of cores is no hierarchy.
// By value: names and lists are moved out through the binding, which clang-tidy does not see.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
PerformanceLevels levelsFromClasses(std::vector<CoreClass> classes) {
    PerformanceLevels result;
    for (auto& [name, cpus] : classes) {
        if (!cpus.empty()) {
            const auto count = static_cast<std::int64_t>(cpus.size());
            result.levels.push_back({count, std::move(name), std::move(cpus)});
        }
    }
    if (result.levels.size() < 2) {
        return {};
    }
    result.count = static_cast<std::int64_t>(result.levels.size());
    return result;
}

std::optional<std::vector<std::uint32_t>> readCPUList(KernelFileReader& reader,
                                                      const std::filesystem::path& path) {
    // An empty mask reads as a bare newline, which the reader hands over like any content.
    const auto text = reader.read(path.c_str());
    return text ? parseCPUList(*text) : std::nullopt;
}

// The CPU numbers of the cpuN folders under devices/system/cpu, ascending.
std::vector<std::uint32_t> listCPUFolders(const std::filesystem::path& cpuDirectory) {
    std::vector<std::uint32_t> cpus;
    DirectoryListing listing(cpuDirectory.c_str());
    while (const auto name = listing.next()) {
        if (!name->starts_with(cpuPrefix)) {
            continue;
        }
        if (const auto number = parseCPUNumber(name->substr(cpuPrefix.size()))) {
            cpus.push_back(*number);
        }
    }
    std::sort(cpus.begin(), cpus.end());
    return cpus;
}

}  // namespace

std::optional<std::vector<std::uint32_t>> parseCPUList(std::string_view text) {
    std::vector<std::uint32_t> cpus;
    const auto list = text::trim(text);
    if (list.empty()) {
        return cpus;
    }
    // One range per comma-separated piece; an empty piece ("0-3,") is malformed.
    for (std::size_t start = 0; start <= list.size();) {
        const auto comma = std::min(list.find(',', start), list.size());
        const auto range = list.substr(start, comma - start);
        start = comma + 1;
        const auto dash = range.find('-');
        const auto first = parseCPUNumber(range.substr(0, dash));
        const auto last =
            dash == std::string_view::npos ? first : parseCPUNumber(range.substr(dash + 1));
        if (!first || !last || *last < *first) {
            return std::nullopt;
        }
        for (auto cpu = *first; cpu <= *last; ++cpu) {
            cpus.push_back(cpu);
        }
    }
    std::sort(cpus.begin(), cpus.end());
    cpus.erase(std::unique(cpus.begin(), cpus.end()), cpus.end());
    return cpus;
}

PerformanceLevels hybridPerformanceLevels(
    const std::vector<std::optional<std::vector<std::uint32_t>>>& pmuCPUs,
    const std::vector<std::uint32_t>& online) {
    std::vector<CoreClass> classes;
    for (std::size_t i = 0; i < pmuCPUs.size() && i < hybridPMUs.size(); ++i) {
        if (!pmuCPUs[i]) {
            continue;
        }
        // The PMU lists the CPUs it supports, whether they are online now or not.
        std::vector<std::uint32_t> cpus;
        std::copy_if(pmuCPUs[i]->begin(), pmuCPUs[i]->end(), std::back_inserter(cpus),
                     [&](std::uint32_t cpu) {
                         return std::binary_search(online.begin(), online.end(), cpu);
                     });
        classes.emplace_back(hybridPMUs[i].second, std::move(cpus));
    }
    return levelsFromClasses(std::move(classes));
}

PerformanceLevels capacityPerformanceLevels(const std::vector<CPUCapacity>& capacities) {
    std::map<std::uint64_t, std::vector<std::uint32_t>, std::greater<>> cpusByCapacity;
    for (const auto& [cpu, capacity] : capacities) {
        cpusByCapacity[capacity].push_back(cpu);
    }
    // Three clusters are the phone-style chips, whose one or two fastest cores are sold as
    // "prime" cores above the big ones. Four or more (clusters of one core type binned to
    // different clocks) have no names people know them by, so they are numbered instead.
    static const std::vector<std::string> twoNames = {"Performance", "Efficiency"};
    static const std::vector<std::string> threeNames = {"Prime", "Performance", "Efficiency"};
    const auto* names = cpusByCapacity.size() == 2   ? &twoNames
                        : cpusByCapacity.size() == 3 ? &threeNames
                                                     : nullptr;
    std::vector<CoreClass> classes;
    for (auto& [capacity, cpus] : cpusByCapacity) {
        std::optional<std::string> name;
        if (names != nullptr) {
            name = (*names)[classes.size()];
        }
        std::sort(cpus.begin(), cpus.end());
        classes.emplace_back(std::move(name), std::move(cpus));
    }
    return levelsFromClasses(std::move(classes));
}

PerformanceLevels readPerformanceLevels(const std::filesystem::path& sysRoot) {
    KernelFileReader reader(4096);
    const auto cpuDirectory = sysRoot / "devices/system/cpu";
    // Without the online mask (a kernel built without CPU hotplug still has it; a partial
    // capture may not) every CPU the other files name is taken to be online.
    const auto online = readCPUList(reader, cpuDirectory / "online");

    std::vector<std::optional<std::vector<std::uint32_t>>> pmuCPUs;
    bool hybrid = false;
    for (const auto& [relative, name] : hybridPMUs) {
        pmuCPUs.push_back(readCPUList(reader, sysRoot / relative));
        hybrid = hybrid || pmuCPUs.back().has_value();
    }
    if (hybrid) {
        if (online) {
            return hybridPerformanceLevels(pmuCPUs, *online);
        }
        std::vector<std::uint32_t> all;
        for (const auto& cpus : pmuCPUs) {
            if (cpus) {
                all.insert(all.end(), cpus->begin(), cpus->end());
            }
        }
        std::sort(all.begin(), all.end());
        return hybridPerformanceLevels(pmuCPUs, all);
    }

    std::vector<CPUCapacity> capacities;
    for (const auto cpu : online ? *online : listCPUFolders(cpuDirectory)) {
        const auto path = cpuDirectory / ("cpu" + std::to_string(cpu)) / "cpu_capacity";
        // A CPU whose capacity cannot be read cannot be placed in a level; it goes uncounted
        // rather than guessed into one.
        if (const auto capacity = reader.readNumber<std::uint64_t>(path.c_str())) {
            capacities.push_back({cpu, *capacity});
        }
    }
    return capacityPerformanceLevels(capacities);
}

}  // namespace corvane
