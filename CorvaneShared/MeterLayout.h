#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "CorvaneShared/MeterAccent.h"
#include "CorvaneShared/MeterAppearance.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/SettingsStore.h"

namespace corvane {

/// A width and height in points.
struct SymbolSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const SymbolSize&, const SymbolSize&) = default;
};

/// Corvane's own symbol set, looked up by symbol name ("cpu", "memorychip", "fan.fill").
class SymbolCatalog {
public:
    virtual ~SymbolCatalog() = default;
    /// The size of the symbol's image at the meters' label point size; absent when the set has
    /// no image of that name. Main thread only.
    virtual std::optional<SymbolSize> imageSize(std::string_view name) const = 0;
};

/// What the meter widths depend on besides the section. Everything is read through it at each
/// call, so a setting changed since the last call applies at once.
struct MeterLayoutSources {
    std::reference_wrapper<const SettingsStore> settings;
    std::reference_wrapper<const SymbolCatalog> symbols;
    /// How many CPUs the processor has (the tiers' sum, else the online count); each gets its
    /// own bar in the "bars" style, so it is one of the inputs of the CPU meter's width.
    std::function<int()> totalCores;
};

/// Where each part of a meter stands, in points from the item's left edge. A part that the
/// settings leave out has zero width. The parts never reach past `width`.
struct MeterColumns {
    /// The letters or the section symbol.
    double labelX = 0;
    double labelWidth = 0;
    /// The sensors symbol drawn after the letters; only the sensors meter with "letters" has it.
    double symbolX = 0;
    double symbolWidth = 0;
    /// The CPU graph, or the memory and storage fill bar (its outline included).
    double graphX = 0;
    double graphWidth = 0;
    /// The readout text.
    double textX = 0;
    double textWidth = 0;
    /// The whole item: the status-item length.
    double width = 0;

    friend bool operator==(const MeterColumns&, const MeterColumns&) = default;
};

/// The settings a meter's widths depend on, read once so that a caller that needs them for
/// its own purposes too reads each setting only once.
struct MeterLayoutChoices {
    MeterLabelStyle labelStyle = MeterLabelStyle::icons;
    /// The CPU graph's style; the other sections have no choice of graph.
    MeterStyle style = MeterStyle::bars;
    /// The readout's text column (`textWidth` of the readout in force); 0 when it is off.
    double readoutWidth = 0;
};

/// The width contract between the menu-bar meters and the status bar: the label column, the
/// gaps, the readout columns and the item widths, for the settings in force at each call.
/// Main thread only (the symbol catalog is).
namespace MeterLayout {

/// The height of every meter, in points; the menu bar centres it.
inline constexpr double itemHeight = 22;
/// The outline around the CPU graph and the fill bars: its height, and its line width and
/// colour, the same on light and dark menu bars.
inline constexpr double frameHeight = 16;
inline constexpr double frameLineWidth = 0.8;
inline constexpr SRGBColor frameColor = {0.43, 0.43, 0.45, 0.92};
/// Corner radii of the outline: a pill is rounded this much (or half its width, when
/// narrower); a square meter keeps slightly softened corners.
inline constexpr double pillRadius = 5;
inline constexpr double squareRadius = 2;
/// Space between the CPU graph's outline and its bars, wave or fill, on every side.
inline constexpr double graphInset = 2;
/// The CPU graph in "bars": one bar per core, this wide and this far apart.
inline constexpr double barWidth = 4.9;
inline constexpr double barGap = 1;
/// The CPU graph in "wave" and "compact".
inline constexpr double waveCompactWidth = 46;
/// The memory and storage bar: the fill's width and the stroke allowance around it.
inline constexpr double fillBarWidth = 8;
inline constexpr double fillBarStrokeAllowance = 0.4;
/// Space between the fill bar's outline and the fill.
inline constexpr double fillBarInset = 1.5;
/// The symbol size when the catalog has no image of that name.
inline constexpr SymbolSize missingSymbolSize = {13, 13};
/// The label column with "letters".
inline constexpr double lettersWidth = 6;

/// 6 with "letters"; otherwise the width of the section's symbol.
double labelWidth(const MeterLayoutSources& sources, MonitorSection section);
/// 3 with "letters", 5 with symbols.
double meterSideGap(const MeterLayoutSources& sources, MonitorSection section);
/// The section's symbol ("cpu", "memorychip", "internaldrive", "sensor") at the label point
/// size; 13 × 13 when the set has no image of that name.
SymbolSize iconSize(const MeterLayoutSources& sources, MonitorSection section);
/// The CPU readout column with its gap: 0 for "off"; 27 + gap for "temperature" and when not
/// set; 33 + gap for "usage" and "power".
double cpuReadoutWidth(const MeterLayoutSources& sources);
/// The CPU graph's width: 46 for "wave" and "compact"; for "bars" and unknown styles one
/// 4.9-point bar per core, 1 point apart, inside the graph inset (at least one core).
double cpuGraphWidth(const MeterLayoutSources& sources);
/// The section's layout settings in force: its label style, graph style and readout (the
/// CPU readout not set is "temperature", the sensors one "power"; memory and storage follow the
/// legacy percent switch).
MeterLayoutChoices layoutChoices(const MeterLayoutSources& sources, MonitorSection section);
/// Every part of the section's meter; `width` is the item width.
MeterColumns columns(const MeterLayoutSources& sources, MonitorSection section);
/// The same for choices already read.
MeterColumns columns(const MeterLayoutSources& sources, MonitorSection section,
                     const MeterLayoutChoices& choices);
/// The status-item length for the section: `columns(...).width`. A memory or storage meter
/// whose readout is off is its label and bar plus one point, like every meter's last point of
/// air, so its outline never touches the next item.
double itemWidth(const MeterLayoutSources& sources, MonitorSection section);

}  // namespace MeterLayout

}  // namespace corvane
