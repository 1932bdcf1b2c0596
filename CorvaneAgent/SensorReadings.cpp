#include "CorvaneAgent/SensorReadings.h"

#include <array>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<SensorCategory>, 7> categoryNames{{
    {SensorCategory::cpu, "cpu"},
    {SensorCategory::gpu, "gpu"},
    {SensorCategory::memory, "memory"},
    {SensorCategory::storage, "storage"},
    {SensorCategory::battery, "battery"},
    {SensorCategory::ambient, "ambient"},
    {SensorCategory::other, "other"},
}};

constexpr std::array<EnumName<PowerChannel>, 3> channelNames{{
    {PowerChannel::system, "system"},
    {PowerChannel::cpu, "cpu"},
    {PowerChannel::gpu, "gpu"},
}};

}  // namespace

std::string_view sensorCategoryRaw(SensorCategory category) {
    return enumName(categoryNames, category).raw;
}

std::string_view powerChannelRaw(PowerChannel channel) {
    return enumName(channelNames, channel).raw;
}

}  // namespace corvane
