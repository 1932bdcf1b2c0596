#include "CorvaneAgent/SensorReadings.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

struct CategoryNames {
    SensorCategory category;
    std::string_view raw;
    std::string_view title;
    std::string_view icon;
};

// Titles are English text keys of the language table; icons are symbol names.
constexpr std::array<CategoryNames, 7> categoryNames = {{
    {SensorCategory::cpu, "cpu", "CPU", "cpu"},
    {SensorCategory::gpu, "gpu", "GPU", "cube.transparent"},
    {SensorCategory::memory, "memory", "Memory", "memorychip"},
    {SensorCategory::storage, "storage", "Storage", "internaldrive"},
    {SensorCategory::battery, "battery", "Battery", "battery.100"},
    {SensorCategory::ambient, "ambient", "Ambient", "wind"},
    {SensorCategory::other, "other", "Other", "thermometer.medium"},
}};

struct ChannelNames {
    PowerChannel channel;
    std::string_view raw;
    std::string_view key;
    std::string_view title;
    std::string_view icon;
};

constexpr std::array<ChannelNames, 3> channelNames = {{
    {PowerChannel::system, "system", "PSTR", "System", "bolt"},
    {PowerChannel::cpu, "cpu", "PPMC", "CPU", "cpu"},
    {PowerChannel::gpu, "gpu", "P3F2", "GPU", "cube.transparent"},
}};

// Every case has a row; a value cast from outside the enumeration gets the last.
const CategoryNames& namesOf(SensorCategory category) {
    const auto found =
        std::find_if(categoryNames.begin(), categoryNames.end(),
                     [category](const auto& row) { return row.category == category; });
    return found == categoryNames.end() ? categoryNames.back() : *found;
}

const ChannelNames& namesOf(PowerChannel channel) {
    const auto found = std::find_if(channelNames.begin(), channelNames.end(),
                                    [channel](const auto& row) { return row.channel == channel; });
    return found == channelNames.end() ? channelNames.back() : *found;
}

}  // namespace

std::string_view sensorCategoryRaw(SensorCategory category) {
    return namesOf(category).raw;
}

std::string title(SensorCategory category, const TextLookup& translate) {
    return translate(namesOf(category).title);
}

std::string_view icon(SensorCategory category) {
    return namesOf(category).icon;
}

std::optional<double> FanReading::load() const {
    if (!minimumRPM || !maximumRPM || !(*maximumRPM > *minimumRPM)) {
        return std::nullopt;
    }
    return std::clamp((rpm - *minimumRPM) / (*maximumRPM - *minimumRPM), 0.0, 1.0);
}

std::string_view powerChannelRaw(PowerChannel channel) {
    return namesOf(channel).raw;
}

std::string_view key(PowerChannel channel) {
    return namesOf(channel).key;
}

std::string title(PowerChannel channel, const TextLookup& translate) {
    return translate(namesOf(channel).title);
}

std::string_view icon(PowerChannel channel) {
    return namesOf(channel).icon;
}

}  // namespace corvane
