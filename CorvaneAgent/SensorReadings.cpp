#include "CorvaneAgent/SensorReadings.h"

namespace corvane {

std::string_view sensorCategoryRaw(SensorCategory category) {
    switch (category) {
        case SensorCategory::cpu: return "cpu";
        case SensorCategory::gpu: return "gpu";
        case SensorCategory::memory: return "memory";
        case SensorCategory::storage: return "storage";
        case SensorCategory::battery: return "battery";
        case SensorCategory::ambient: return "ambient";
        case SensorCategory::other: return "other";
    }
    return {};
}

std::string_view powerChannelRaw(PowerChannel channel) {
    switch (channel) {
        case PowerChannel::system: return "system";
        case PowerChannel::cpu: return "cpu";
        case PowerChannel::gpu: return "gpu";
    }
    return {};
}

}  // namespace corvane
