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

double readoutTextWidth(const MeterLayoutSources& sources, MonitorSection section) {
    const SettingsStore& settings = sources.settings;
    switch (section) {
        case MonitorSection::cpu:
            return textWidth(MeterSettings::cpuReadout(settings).value_or(CPUReadout::temperature));
        case MonitorSection::memory: return textWidth(MeterSettings::shownMemoryReadout(settings));
        case MonitorSection::storage:
            return textWidth(MeterSettings::shownStorageReadout(settings));
        case MonitorSection::sensors:
            return textWidth(
                MeterSettings::sensorsReadout(settings).value_or(SensorsReadout::power));
    }
    return 0;
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
    const double text = readoutTextWidth(sources, MonitorSection::cpu);
    return text > 0 ? text + meterSideGap(sources, MonitorSection::cpu) : 0;
}

double cpuGraphWidth(const MeterLayoutSources& sources) {
    if (MeterSettings::style(sources.settings) != MeterStyle::bars) {
        return waveCompactWidth;
    }
    const double cores = std::max(1, sources.totalCores ? sources.totalCores() : 1);
    return (cores - 1) * barGap + (barWidth * cores + 2 * graphInset);
}

MeterColumns columns(const MeterLayoutSources& sources, MonitorSection section) {
    MeterColumns parts;
    // Read once: the label style decides both the label column and the gaps.
    const bool letters = usesLetters(sources, section);
    const double gap = sideGap(letters);
    parts.labelWidth = labelColumnWidth(sources, section, letters);
    double x = parts.labelWidth + labelGap;
    switch (section) {
        case MonitorSection::cpu:
            parts.graphX = x + gap;
            parts.graphWidth = cpuGraphWidth(sources);
            x = placeText(parts, parts.graphX + parts.graphWidth,
                          readoutTextWidth(sources, section), gap);
            break;
        case MonitorSection::memory:
        case MonitorSection::storage:
            parts.graphX = x + gap;
            parts.graphWidth = fillBarWidth + fillBarStrokeAllowance;
            x = placeText(parts, parts.graphX + parts.graphWidth,
                          readoutTextWidth(sources, section), gap);
            break;
        case MonitorSection::sensors:
            // With letters the sensor symbol still stands, after the letters.
            if (letters) {
                parts.symbolX = x + gap;
                parts.symbolWidth = symbolSize(sources, sectionIcon(section)).width;
                x = parts.symbolX + parts.symbolWidth;
            }
            x = placeText(parts, x, readoutTextWidth(sources, section), gap);
            break;
    }
    parts.width = x + trailingGap;
    return parts;
}

double itemWidth(const MeterLayoutSources& sources, MonitorSection section) {
    return columns(sources, section).width;
}

}  // namespace corvane::MeterLayout
