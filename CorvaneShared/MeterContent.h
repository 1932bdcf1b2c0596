#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneShared/MeterAccent.h"
#include "CorvaneShared/MeterAppearance.h"
#include "CorvaneShared/MeterLayout.h"
#include "CorvaneShared/MonitorSection.h"

namespace corvane {

/// The foreground the menu bar asks its meters for: light marks on a dark bar, or dark marks on
/// a light one. The host decides it from the desktop's colour scheme.
enum class MeterPalette { lightOnDark, darkOnLight };

/// What a meter draws between its label and its readout.
enum class MeterGraph {
    /// Nothing (the sensors meter).
    none,
    /// One vertical bar per core.
    bars,
    /// The CPU usage history as a filled curve, oldest on the left.
    wave,
    /// One horizontal bar of the total CPU usage.
    compact,
    /// One vertical bar filling from the bottom (memory, storage).
    fill,
};

/// Everything one meter draws, its readings already quantised to what can be seen: a drawing is
/// a function of this value alone, so two equal contents draw the same pixels and
/// `drawSignature` can stand for the drawing.
struct MeterContent {
    /// Graph levels count in half points: the finest step a screen at twice the point density
    /// shows.
    static constexpr int stepsPerPoint = 2;

    MonitorSection section = MonitorSection::cpu;
    MeterPalette palette = MeterPalette::lightOnDark;
    MeterShape shape = MeterShape::pill;
    MeterColumns columns;
    /// The label's letters, drawn stacked ("CPU"); empty when the label is the symbol.
    std::string letters;
    /// The symbol in the label column, or after the letters on the sensors meter; empty when
    /// none is drawn.
    std::string_view symbol;
    MeterGraph graph = MeterGraph::none;
    /// The graph's levels in steps of 1 / stepsPerPoint along its length: one per bar (bars),
    /// one per history entry, oldest first (wave), or a single one (compact, fill). Never above
    /// `fullLevel(graph)`.
    std::vector<std::uint8_t> levels;
    /// Bars only: whether bar i is a core of the fastest tier, drawn in `fastAccent`.
    std::vector<bool> fastCores;
    SRGBColor accent;
    SRGBColor fastAccent;
    /// The readout; "–" for a value that cannot be read; empty when the readout is off.
    std::string text;
    /// The widest text of the readout's ordinary range ("100%", "888MB"): the drawing sizes the
    /// readout by it, so that the size does not change with the value.
    std::string textTemplate;

    friend bool operator==(const MeterContent&, const MeterContent&) = default;
};

/// The level of a full graph: its length inside the outline, in steps.
int fullLevel(MeterGraph graph);
/// `fraction` (clamped to 0...1; NaN counts as 0) as a level of the graph.
std::uint8_t graphLevel(MeterGraph graph, double fraction);

/// A text that is equal for two contents exactly when they are equal: the section key, the
/// graph style, the settings that shape the drawing, the accents, the levels and the readout
/// ("memory|fill|…|46%"). The status bar compares it after each refresh and redraws a meter
/// only when it changed.
std::string drawSignature(const MeterContent& content);

}  // namespace corvane
