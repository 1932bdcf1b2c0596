#include "CorvaneShared/MeterLayout.h"

#include <algorithm>

#include "CorvaneShared/MeterSettings.h"

namespace corvane::MeterLayout {

namespace {

constexpr double lettersSideGap = 3;
constexpr double symbolSideGap = 5;
// One point between the label and what follows, and one after the last part.
constexpr double labelGap = 1;
constexpr double trailingGap = 1;

bool usesLetters(const MeterLayoutSources& sources, MonitorSection section) {
    return MeterSettings::labelStyle(sources.settings, section) == MeterLabelStyle::letters;
}

SymbolSize symbolSize(const MeterLayoutSources& sources, std::string_view name) {
    return sources.symbols.get().imageSize(name).value_or(missingSymbolSize);
}

double sideGap(bool letters) {
    return letters ? lettersSideGap : symbolSideGap;
}

double labelColumnWidth(const MeterLayoutSources& sources, MonitorSection section, bool letters) {
    return letters ? lettersWidth : symbolSize(sources, sectionIcon(section)).width;
}

// The text column of a readout of `textWidth` points: the side gap, the text and the last
// point; nothing at all when the readout is off.
double placeText(MeterColumns& parts, double x, double textWidth, double gap) {
    if (textWidth <= 0) {
        return x;
    }
    parts.textX = x + gap;
    parts.textWidth = textWidth;
    return parts.textX + textWidth;
}

double readoutTextWidth(const SettingsStore& settings, MonitorSection section) {
    switch (section) {
        case MonitorSection::cpu: return textWidth(MeterSettings::shownCPUReadout(settings));
        case MonitorSection::memory: return textWidth(MeterSettings::shownMemoryReadout(settings));
        case MonitorSection::storage:
            return textWidth(MeterSettings::shownStorageReadout(settings));
        case MonitorSection::sensors:
            return textWidth(MeterSettings::shownSensorsReadout(settings));
    }
    return 0;
}

double graphWidth(MeterStyle style, int totalCores) {
    if (style != MeterStyle::bars) {
        return waveCompactWidth;
    }
    const double cores = std::max(1, totalCores);
    return (cores - 1) * barGap + (barWidth * cores + 2 * graphInset);
}

int coresOf(const MeterLayoutSources& sources) {
    return sources.totalCores ? sources.totalCores() : 1;
}

}  // namespace

double labelWidth(const MeterLayoutSources& sources, MonitorSection section) {
    return labelColumnWidth(sources, section, usesLetters(sources, section));
}

double meterSideGap(const MeterLayoutSources& sources, MonitorSection section) {
    return sideGap(usesLetters(sources, section));
}

SymbolSize iconSize(const MeterLayoutSources& sources, MonitorSection section) {
    return symbolSize(sources, sectionIcon(section));
}

double cpuReadoutWidth(const MeterLayoutSources& sources) {
    const double text = readoutTextWidth(sources.settings, MonitorSection::cpu);
    return text > 0 ? text + meterSideGap(sources, MonitorSection::cpu) : 0;
}

double cpuGraphWidth(const MeterLayoutSources& sources) {
    return graphWidth(MeterSettings::style(sources.settings), coresOf(sources));
}

MeterLayoutChoices layoutChoices(const MeterLayoutSources& sources, MonitorSection section) {
    const SettingsStore& settings = sources.settings;
    return {
        .labelStyle = MeterSettings::labelStyle(settings, section),
        .style = section == MonitorSection::cpu ? MeterSettings::style(settings) : MeterStyle::bars,
        .readoutWidth = readoutTextWidth(settings, section),
    };
}

MeterColumns columns(const MeterLayoutSources& sources, MonitorSection section) {
    return columns(sources, section, layoutChoices(sources, section));
}

MeterColumns columns(const MeterLayoutSources& sources, MonitorSection section,
                     const MeterLayoutChoices& choices) {
    MeterColumns parts;
    const bool letters = choices.labelStyle == MeterLabelStyle::letters;
    const double gap = sideGap(letters);
    parts.labelWidth = labelColumnWidth(sources, section, letters);
    double x = parts.labelWidth + labelGap;
    switch (section) {
        case MonitorSection::cpu:
            parts.graphX = x + gap;
            parts.graphWidth = graphWidth(choices.style, coresOf(sources));
            x = placeText(parts, parts.graphX + parts.graphWidth, choices.readoutWidth, gap);
            break;
        case MonitorSection::memory:
        case MonitorSection::storage:
            parts.graphX = x + gap;
            parts.graphWidth = fillBarWidth + fillBarStrokeAllowance;
            x = placeText(parts, parts.graphX + parts.graphWidth, choices.readoutWidth, gap);
            break;
        case MonitorSection::sensors:
            // With letters the sensor symbol still stands, after the letters.
            if (letters) {
                parts.symbolX = x + gap;
                parts.symbolWidth = symbolSize(sources, sectionIcon(section)).width;
                x = parts.symbolX + parts.symbolWidth;
            }
            x = placeText(parts, x, choices.readoutWidth, gap);
            break;
    }
    parts.width = x + trailingGap;
    return parts;
}

double itemWidth(const MeterLayoutSources& sources, MonitorSection section) {
    return columns(sources, section).width;
}

}  // namespace corvane::MeterLayout
