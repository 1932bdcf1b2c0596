#pragma once

#include <functional>
#include <string>

#include "CorvaneAgent/MenuBarReadings.h"
#include "CorvaneShared/MeterContent.h"
#include "CorvaneShared/MeterLayout.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/Units.h"

namespace corvane {

/// Where a menu-bar meter takes its settings, texts and foreground from. Every call reads them
/// afresh, so a changed setting, language or colour scheme shows at the next redraw.
struct MeterSources {
    MeterLayoutSources layout;
    UnitSources units;
    /// The host's foreground; absent means light on dark.
    std::function<MeterPalette()> palette = nullptr;
};

/// What the section's meter draws now, from `readings` (null once the model is gone: the meter
/// then shows no values) and the settings in force. Absent readings read as unavailable ("–"),
/// never as 0. Main thread only.
MeterContent meterContent(MonitorSection section, const MenuBarReadings* readings,
                          const MeterSources& sources);

/// The signature of what the section's meter would draw now (see drawSignature(MeterContent)):
/// after a refresh, only a meter whose signature changed needs redrawing. Main thread only.
std::string drawSignature(MonitorSection section, const MenuBarReadings* readings,
                          const MeterSources& sources);

}  // namespace corvane
