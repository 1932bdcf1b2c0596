#include "CorvaneShared/MonitorSection.h"

namespace corvane {

std::string_view sectionKey(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "cpu";
        case MonitorSection::memory: return "memory";
        case MonitorSection::storage: return "storage";
        case MonitorSection::sensors: return "sensors";
    }
    return {};
}

std::optional<MonitorSection> sectionFromKey(std::string_view key) {
    for (MonitorSection section : allMonitorSections) {
        if (sectionKey(section) == key) {
            return section;
        }
    }
    return std::nullopt;
}

std::string_view itemVisibilityKey(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "showCPUItem";
        case MonitorSection::memory: return "showMemoryItem";
        case MonitorSection::storage: return "showStorageItem";
        case MonitorSection::sensors: return "showSensorsItem";
    }
    return {};
}

std::string sectionTitle(MonitorSection section, const TextLookup& translate) {
    switch (section) {
        case MonitorSection::cpu: return translate("CPU");
        case MonitorSection::memory: return translate("Memory");
        case MonitorSection::storage: return translate("Storage");
        case MonitorSection::sensors: return translate("Sensors");
    }
    return {};
}

std::string_view sectionIcon(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "cpu";
        case MonitorSection::memory: return "memorychip";
        case MonitorSection::storage: return "internaldrive";
        case MonitorSection::sensors: return "sensor";
    }
    return {};
}

}  // namespace corvane
