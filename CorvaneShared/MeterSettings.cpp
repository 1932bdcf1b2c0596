#include "CorvaneShared/MeterSettings.h"

#include <algorithm>
#include <string>

namespace corvane::MeterSettings {

namespace {

constexpr std::string_view orderKey = "menuBarOrder";

bool contains(const std::vector<MonitorSection>& sections, MonitorSection section) {
    return std::find(sections.begin(), sections.end(), section) != sections.end();
}

template <typename Value>
std::optional<Value> parsedSetting(const SettingsStore& settings, std::string_view key,
                                   std::optional<Value> (*parse)(std::string_view)) {
    std::optional<std::string> raw = settings.string(key);
    return raw ? parse(*raw) : std::nullopt;
}

std::optional<MeterAccent> storedAccent(const SettingsStore& settings, std::string_view key) {
    return parsedSetting<MeterAccent>(settings, key, &MeterAccent::fromRawValue);
}

// What the per-meter keys replace: one accent for all meters, and the fast cores' own.
struct LegacyAccents {
    MeterAccent common;
    MeterAccent fastCore;

    MeterAccent forSlot(MeterAccentSlot slot) const {
        return slot == MeterAccentSlot::cpuFastCore ? fastCore : common;
    }
};

LegacyAccents readLegacyAccents(const SettingsStore& settings) {
    const MeterAccent common = storedAccent(settings, "accentChoice").value_or(NamedAccent::signal);
    return {common, storedAccent(settings, "performanceCoreAccent").value_or(common)};
}

}  // namespace

bool showsItem(const SettingsStore& settings, MonitorSection section) {
    SettingValue value = settings.object(itemVisibilityKey(section));
    return value.is_boolean() ? value.get<bool>() : true;
}

std::string_view readoutKey(MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return "cpuReadout";
        case MonitorSection::memory: return "memoryReadout";
        case MonitorSection::storage: return "storageReadout";
        case MonitorSection::sensors: return "sensorsReadout";
    }
    return {};
}

std::vector<MonitorSection> order(std::string_view stored) {
    std::vector<MonitorSection> sections;
    while (!stored.empty()) {
        const std::size_t comma = stored.find(',');
        auto section = sectionFromKey(stored.substr(0, comma));
        if (section && !contains(sections, *section)) {
            sections.push_back(*section);
        }
        stored.remove_prefix(comma == std::string_view::npos ? stored.size() : comma + 1);
    }
    for (MonitorSection section : defaultMenuBarOrder) {
        if (!contains(sections, section)) {
            sections.push_back(section);
        }
    }
    return sections;
}

std::vector<MonitorSection> merged(const std::vector<MonitorSection>& visible,
                                   const std::vector<MonitorSection>& stored,
                                   const std::function<bool(MonitorSection)>& shown) {
    std::vector<MonitorSection> result;
    auto next = visible.begin();
    for (MonitorSection slot : stored) {
        if (!shown(slot)) {
            result.push_back(slot);
        } else if (next != visible.end()) {
            result.push_back(*next++);
        }
    }
    result.insert(result.end(), next, visible.end());
    for (MonitorSection section : allMonitorSections) {
        if (!contains(result, section)) {
            result.push_back(section);
        }
    }
    return result;
}

std::vector<MonitorSection> menuBarOrder(const SettingsStore& settings) {
    return order(settings.string(orderKey).value_or(""));
}

void setMenuBarOrder(SettingsStore& settings, const std::vector<MonitorSection>& visible) {
    auto shown = [&](MonitorSection section) { return showsItem(settings, section); };
    std::string joined;
    for (MonitorSection section : merged(visible, menuBarOrder(settings), shown)) {
        if (!joined.empty()) {
            joined += ',';
        }
        joined += sectionKey(section);
    }
    settings.set(orderKey, joined);
}

MeterStyle style(const SettingsStore& settings) {
    return parsedSetting(settings, "meterStyle", &meterStyleFromRaw).value_or(MeterStyle::bars);
}

MeterShape shape(const SettingsStore& settings) {
    return parsedSetting(settings, "meterShape", &meterShapeFromRaw).value_or(MeterShape::pill);
}

MeterLabelStyle labelStyle(const SettingsStore& settings, MonitorSection /*section*/) {
    return parsedSetting(settings, "meterLabelStyle", &meterLabelStyleFromRaw)
        .value_or(MeterLabelStyle::icons);
}

std::optional<CPUReadout> cpuReadout(const SettingsStore& settings) {
    return parsedSetting(settings, readoutKey(MonitorSection::cpu), &cpuReadoutFromRaw);
}

std::optional<MemoryReadout> memoryReadout(const SettingsStore& settings) {
    return parsedSetting(settings, readoutKey(MonitorSection::memory), &memoryReadoutFromRaw);
}

std::optional<StorageReadout> storageReadout(const SettingsStore& settings) {
    return parsedSetting(settings, readoutKey(MonitorSection::storage), &storageReadoutFromRaw);
}

std::optional<SensorsReadout> sensorsReadout(const SettingsStore& settings) {
    return parsedSetting(settings, readoutKey(MonitorSection::sensors), &sensorsReadoutFromRaw);
}

MemoryReadout shownMemoryReadout(const SettingsStore& settings) {
    if (auto readout = memoryReadout(settings)) {
        return *readout;
    }
    return legacyShowsPercent(settings) ? MemoryReadout::usage : MemoryReadout::off;
}

StorageReadout shownStorageReadout(const SettingsStore& settings) {
    if (auto readout = storageReadout(settings)) {
        return *readout;
    }
    return legacyShowsPercent(settings) ? StorageReadout::usage : StorageReadout::off;
}

CPUReadout shownCPUReadout(const SettingsStore& settings) {
    return cpuReadout(settings).value_or(CPUReadout::temperature);
}

SensorsReadout shownSensorsReadout(const SettingsStore& settings) {
    return sensorsReadout(settings).value_or(SensorsReadout::power);
}

bool legacyShowsPercent(const SettingsStore& settings) {
    SettingValue value = settings.object("showMemoryPercent");
    return value.is_boolean() && value.get<bool>();
}

MeterAccent accent(const SettingsStore& settings, MeterAccentSlot slot) {
    if (auto stored = storedAccent(settings, accentKey(slot))) {
        return *stored;
    }
    return readLegacyAccents(settings).forSlot(slot);
}

SRGBColor color(const SettingsStore& settings, MeterAccentSlot slot) {
    return accent(settings, slot).color();
}

void migrateAccents(SettingsStore& settings) {
    const LegacyAccents legacy = readLegacyAccents(settings);
    for (MeterAccentSlot slot : allMeterAccentSlots) {
        if (settings.object(accentKey(slot)).is_null()) {
            settings.set(accentKey(slot), legacy.forSlot(slot).rawValue());
        }
    }
}

}  // namespace corvane::MeterSettings
