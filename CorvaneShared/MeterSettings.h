#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "CorvaneShared/MeterAccent.h"
#include "CorvaneShared/MeterAppearance.h"
#include "CorvaneShared/MeterReadout.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/SettingsStore.h"

/// What each menu-bar meter shows and how it is drawn, read from the shared settings afresh on
/// every call (nothing is cached, so a value the companion application writes applies at the
/// next read). Unknown, mistyped or absent values fall back as each function states. Any thread.
namespace corvane::MeterSettings {

/// The order that fills in sections a stored order lacks. It differs from the factory value of
/// "menuBarOrder" (storage, sensors, memory, cpu) on purpose.
inline constexpr std::array<MonitorSection, 4> defaultMenuBarOrder = {
    MonitorSection::sensors, MonitorSection::storage, MonitorSection::memory, MonitorSection::cpu};

/// The section's visibility setting when it holds a Boolean; true otherwise.
bool showsItem(const SettingsStore& settings, MonitorSection section);
/// "cpuReadout", "memoryReadout", "storageReadout" or "sensorsReadout".
std::string_view readoutKey(MonitorSection section);

/// A stored order: the sections named between commas (empty pieces dropped, pieces not
/// trimmed, unknown names and repeats skipped), then the missing ones in defaultMenuBarOrder.
/// Always all four sections, each once.
std::vector<MonitorSection> order(std::string_view stored);
/// `visible` in its new order laid over the full `stored` order: a slot whose section is not
/// `shown` keeps it, a shown slot takes the next visible section or is left out once they are
/// used up; then the unused visible sections, then whatever of all four is still missing. So
/// hidden meters keep their places and reappear there.
std::vector<MonitorSection> merged(const std::vector<MonitorSection>& visible,
                                   const std::vector<MonitorSection>& stored,
                                   const std::function<bool(MonitorSection)>& shown);
/// "menuBarOrder" parsed with order().
std::vector<MonitorSection> menuBarOrder(const SettingsStore& settings);
/// Stores a new "menuBarOrder" from the order the visible meters now stand in, merged into the
/// stored order with each section's visibility setting.
void setMenuBarOrder(SettingsStore& settings, const std::vector<MonitorSection>& visible);

/// "meterStyle"; an unknown or absent value is `bars`, the style the meter width assumes too.
MeterStyle style(const SettingsStore& settings);
/// "meterShape"; an unknown or absent value is `pill`.
MeterShape shape(const SettingsStore& settings);
/// "meterLabelStyle", which every section follows; an unknown or absent value is `icons`.
MeterLabelStyle labelStyle(const SettingsStore& settings, MonitorSection section);

/// The readout settings; absent when not set (no value, or one that names no readout).
std::optional<CPUReadout> cpuReadout(const SettingsStore& settings);
std::optional<MemoryReadout> memoryReadout(const SettingsStore& settings);
std::optional<StorageReadout> storageReadout(const SettingsStore& settings);
std::optional<SensorsReadout> sensorsReadout(const SettingsStore& settings);
/// The memory and storage readouts in force: the setting, or when it is not set `usage` if
/// legacyShowsPercent() and `off` otherwise. The older switch governed both meters.
MemoryReadout shownMemoryReadout(const SettingsStore& settings);
StorageReadout shownStorageReadout(const SettingsStore& settings);
/// The CPU and sensors readouts in force: the setting, or when it is not set `temperature`
/// and `power`, the readouts the meters were first made with.
CPUReadout shownCPUReadout(const SettingsStore& settings);
SensorsReadout shownSensorsReadout(const SettingsStore& settings);

/// "showMemoryPercent" when it holds a Boolean; false otherwise.
bool legacyShowsPercent(const SettingsStore& settings);

/// The slot's accent. A value that does not parse gives the accent the migration would store
/// for the slot, so meters look as they did before the per-meter settings existed.
MeterAccent accent(const SettingsStore& settings, MeterAccentSlot slot);
/// The slot's accent colour.
SRGBColor color(const SettingsStore& settings, MeterAccentSlot slot);
/// Copies the legacy "accentChoice" and "performanceCoreAccent" into each slot's key that holds
/// no value yet; the legacy keys stay, so running it again changes nothing. Run at start-up
/// before the meters are first drawn.
void migrateAccents(SettingsStore& settings);

}  // namespace corvane::MeterSettings
