#include "Platform/Linux/AmdgpuStatisticsSource.h"

#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "Foundation/DirectoryListing.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::string_view cardPrefix = "card";
constexpr std::string_view suspendedStatus = "suspended";

// "card1" → 1; absent for connectors ("card1-DP-2") and render nodes ("renderD128").
std::optional<std::uint64_t> cardNumber(std::string_view name) {
    if (!name.starts_with(cardPrefix)) {
        return std::nullopt;
    }
    return parseNumber<std::uint64_t>(name.substr(cardPrefix.size()));
}

// Card numbers in ascending order, so that the same card comes first on every read.
std::vector<std::uint64_t> listCards(const std::string& drmDirectory) {
    std::vector<std::uint64_t> cards;
    DirectoryListing listing(drmDirectory.c_str());
    while (const auto name = listing.next()) {
        if (const auto number = cardNumber(*name)) {
            cards.push_back(*number);
        }
    }
    std::sort(cards.begin(), cards.end());
    return cards;
}

}  // namespace

StatisticsDictionary statisticsFromAmdgpu(const AmdgpuReading& reading) {
    auto statistics = StatisticsDictionary::object();
    if (reading.busyPercent) {
        // Written as a fraction: the monitor takes anything up to 1 for a fraction, so the
        // percentage itself would show 1 % as a fully busy GPU.
        statistics["Device Utilization"] =
            std::min<std::uint64_t>(*reading.busyPercent, 100) / 100.0;
    }
    if (reading.gttUsedBytes) {
        statistics["gartUsedBytes"] = *reading.gttUsedBytes;
    }
    if (reading.vramUsedBytes || reading.gttUsedBytes) {
        // Held at the largest value rather than wrapping to a small one on garbage figures.
        constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
        const auto vram = reading.vramUsedBytes.value_or(0);
        const auto gtt = reading.gttUsedBytes.value_or(0);
        statistics["inUseSysMemoryBytes"] = vram > largest - gtt ? largest : vram + gtt;
    }
    return statistics;
}

AmdgpuStatisticsSource::AmdgpuStatisticsSource(const std::filesystem::path& sysRoot)
    : drmDirectory((sysRoot / "class/drm").string()) {}

StatisticsDictionary AmdgpuStatisticsSource::performanceStatistics() {
    auto statistics = StatisticsDictionary::object();
    for (const auto card : listCards(drmDirectory)) {
        const auto deviceDirectory = drmDirectory + "/card" + std::to_string(card) + "/device/";
        const auto cardStatistics = statisticsFromAmdgpu(readCard(deviceDirectory));
        // insert() keeps a name already present: the lower card's value stands.
        statistics.insert(cardStatistics.begin(), cardStatistics.end());
    }
    return statistics;
}

AmdgpuReading AmdgpuStatisticsSource::readCard(const std::string& deviceDirectory) {
    AmdgpuReading reading;
    const auto busyPath = deviceDirectory + "gpu_busy_percent";
    // Only amdgpu has this file. Its existence is asked, not its content: reading it resumes a
    // runtime-suspended card (the driver takes a runtime PM reference to ask the firmware),
    // which would keep a laptop's discrete GPU powered for as long as the monitor samples. A
    // suspended card is idle. The memory counters are the driver's own bookkeeping and wake
    // nothing.
    if (::access(busyPath.c_str(), F_OK) == 0) {
        reading.busyPercent = isRuntimeSuspended(deviceDirectory) ? std::optional<std::uint64_t>(0)
                                                                  : readNumber(busyPath);
    }
    reading.vramUsedBytes = readNumber(deviceDirectory + "mem_info_vram_used");
    reading.gttUsedBytes = readNumber(deviceDirectory + "mem_info_gtt_used");
    return reading;
}

bool AmdgpuStatisticsSource::isRuntimeSuspended(const std::string& deviceDirectory) {
    const auto status = reader.read((deviceDirectory + "power/runtime_status").c_str());
    return status && text::trim(*status) == suspendedStatus;
}

std::optional<std::uint64_t> AmdgpuStatisticsSource::readNumber(const std::string& path) {
    return reader.readNumber<std::uint64_t>(path.c_str());
}

}  // namespace corvane
