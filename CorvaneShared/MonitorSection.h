#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// The four meters, in declaration order (also the order of `allMonitorSections`).
enum class MonitorSection { cpu, memory, storage, sensors };

inline constexpr std::array<MonitorSection, 4> allMonitorSections = {
    MonitorSection::cpu, MonitorSection::memory, MonitorSection::storage, MonitorSection::sensors};

/// "cpu", "memory", "storage" or "sensors".
std::string_view sectionKey(MonitorSection section);
/// The section whose key is exactly `key` (case-sensitive, no blanks allowed); absent otherwise.
std::optional<MonitorSection> sectionFromKey(std::string_view key);
/// The Boolean setting that shows or hides the section's meter ("showCPUItem", ...).
std::string_view itemVisibilityKey(MonitorSection section);
/// The section's display name ("CPU", "Memory", ...), translated through `translate`.
std::string sectionTitle(MonitorSection section, const TextLookup& translate);
/// The English title of the section's menu-bar item and detail panel, the key of its
/// translation: "CPU", "Memory", "SSD" or "Sensors". The storage panel is "SSD" whatever the
/// disk, while the settings call the section "Storage" (`sectionTitle`).
std::string_view panelTitle(MonitorSection section);
/// The symbol name of the section's label icon ("cpu", "memorychip", "internaldrive",
/// "sensor"); the UI layer maps it to an icon of the desktop's theme.
std::string_view sectionIcon(MonitorSection section);

}  // namespace corvane
