#include "CorvaneAgent/MenuBarMeter.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/MeterTexts.h"

namespace corvane {

namespace {

// The stacked letters of each label. They stand for the number beside them, so the sensors
// meter's follow its readout. The storage panel is titled "SSD", and its meter matches.
std::string_view lettersFor(MonitorSection section, SensorsReadout sensorsReadout) {
    switch (section) {
        case MonitorSection::cpu: return "CPU";
        case MonitorSection::memory: return "MEM";
        case MonitorSection::storage: return "SSD";
        case MonitorSection::sensors: break;
    }
    switch (sensorsReadout) {
        case SensorsReadout::off: return "SEN";
        case SensorsReadout::power: return "PWR";
        case SensorsReadout::hottest: return "TMP";
        case SensorsReadout::gpu: return "GPU";
        case SensorsReadout::fan: return "FAN";
    }
    return {};
}

std::string orUnavailable(const std::optional<std::string>& text) {
    return text ? *text : std::string(MeterTexts::unavailable);
}

// Each show function sets the readout and its template: the widest text of its ordinary
// range, by which the drawing sizes it.
constexpr double templateValue = 888;

void showPercent(MeterContent& content, const MenuBarReadings* readings,
                 double (MenuBarReadings::*fraction)() const) {
    content.text = readings ? Units::percentText((readings->*fraction)())
                            : std::string(MeterTexts::unavailable);
    content.textTemplate = Units::percentText(1);
}

void showDegrees(MeterContent& content, std::optional<double> celsius,
                 const MeterSources& sources) {
    content.text = celsius && std::isfinite(*celsius) ? Units::degrees(*celsius, sources.units)
                                                      : std::string(MeterTexts::unavailable);
    content.textTemplate = Units::degreesText(templateValue);
}

void showWatts(MeterContent& content, std::optional<double> watts, const MeterSources& sources) {
    const std::string locale = Units::displayLocale(sources.units);
    content.text = watts ? orUnavailable(MeterTexts::watts(*watts, locale))
                         : std::string(MeterTexts::unavailable);
    content.textTemplate = MeterTexts::watts(templateValue, locale).value_or("");
}

void showBytes(MeterContent& content, std::optional<double> bytes, const MeterSources& sources) {
    const std::string locale = Units::displayLocale(sources.units);
    content.text = bytes ? orUnavailable(MeterTexts::bytes(*bytes, locale))
                         : std::string(MeterTexts::unavailable);
    // Megabytes: the widest of the units.
    content.textTemplate = MeterTexts::bytes(templateValue * 1e6, locale).value_or("");
}

void showRevolutions(MeterContent& content, std::optional<double> rpm,
                     const MeterSources& sources) {
    const std::string locale = Units::displayLocale(sources.units);
    content.text = rpm ? orUnavailable(MeterTexts::revolutions(*rpm, locale))
                       : std::string(MeterTexts::unavailable);
    content.textTemplate = MeterTexts::revolutions(templateValue * 10 + 8, locale).value_or("");
}

// Bar i shows core i; cores the model has not (yet) read stay empty.
void describeBars(MeterContent& content, const MenuBarReadings* readings, int cores) {
    content.levels.assign(static_cast<std::size_t>(std::max(1, cores)), 0);
    content.fastCores.assign(content.levels.size(), false);
    if (!readings) {
        return;
    }
    const auto& usages = readings->coreUsages();
    const auto& fast = readings->performanceCores();
    for (std::size_t i = 0; i < content.levels.size() && i < usages.size(); ++i) {
        content.levels[i] = graphLevel(MeterGraph::bars, usages[i]);
        content.fastCores[i] = i < fast.size() && fast[i];
    }
}

// Each describe function reads the settings its meter needs once, and notes the ones the
// layout needs too in `choices`.
void describeCPU(MeterContent& content, const MenuBarReadings* readings,
                 const MeterSources& sources, MeterLayoutChoices& choices) {
    const SettingsStore& settings = sources.layout.settings;
    choices.style = MeterSettings::style(settings);
    switch (choices.style) {
        case MeterStyle::bars:
            content.graph = MeterGraph::bars;
            describeBars(content, readings,
                         sources.layout.totalCores ? sources.layout.totalCores() : 1);
            content.fastAccent = MeterSettings::color(settings, MeterAccentSlot::cpuFastCore);
            break;
        case MeterStyle::wave:
            content.graph = MeterGraph::wave;
            if (readings) {
                for (double usage : readings->cpuHistory()) {
                    content.levels.push_back(graphLevel(MeterGraph::wave, usage));
                }
            }
            break;
        case MeterStyle::compact:
            content.graph = MeterGraph::compact;
            content.levels = {graphLevel(MeterGraph::compact, readings ? readings->cpuUsage() : 0)};
            break;
    }
    content.accent = MeterSettings::color(settings, MeterAccentSlot::cpu);

    const CPUReadout readout = MeterSettings::shownCPUReadout(settings);
    choices.readoutWidth = textWidth(readout);
    switch (readout) {
        case CPUReadout::off: break;
        case CPUReadout::usage: showPercent(content, readings, &MenuBarReadings::cpuUsage); break;
        case CPUReadout::temperature:
            showDegrees(content, readings ? readings->cpuTemperature() : std::nullopt, sources);
            break;
        case CPUReadout::power:
            showWatts(content, readings ? readings->cpuWatts() : std::nullopt, sources);
            break;
    }
}

void describeFill(MeterContent& content, double fraction, MeterAccentSlot slot,
                  const MeterSources& sources) {
    content.graph = MeterGraph::fill;
    content.levels = {graphLevel(MeterGraph::fill, fraction)};
    content.accent = MeterSettings::color(sources.layout.settings, slot);
}

void describeMemory(MeterContent& content, const MenuBarReadings* readings,
                    const MeterSources& sources, MeterLayoutChoices& choices) {
    describeFill(content, readings ? readings->memoryUsage() : 0, MeterAccentSlot::memory, sources);
    const MemoryReadout readout = MeterSettings::shownMemoryReadout(sources.layout.settings);
    choices.readoutWidth = textWidth(readout);
    switch (readout) {
        case MemoryReadout::off: break;
        case MemoryReadout::usage:
            showPercent(content, readings, &MenuBarReadings::memoryUsage);
            break;
        case MemoryReadout::pressure:
            showPercent(content, readings, &MenuBarReadings::memoryPressure);
            break;
        case MemoryReadout::swap:
            showBytes(
                content,
                readings ? std::optional(static_cast<double>(readings->swapUsed())) : std::nullopt,
                sources);
            break;
    }
}

void describeStorage(MeterContent& content, const MenuBarReadings* readings,
                     const MeterSources& sources, MeterLayoutChoices& choices) {
    describeFill(content, readings ? readings->storageUsage() : 0, MeterAccentSlot::storage,
                 sources);
    const StorageReadout readout = MeterSettings::shownStorageReadout(sources.layout.settings);
    choices.readoutWidth = textWidth(readout);
    switch (readout) {
        case StorageReadout::off: break;
        case StorageReadout::usage:
            showPercent(content, readings, &MenuBarReadings::storageUsage);
            break;
        case StorageReadout::free:
            showBytes(content,
                      readings ? std::optional(static_cast<double>(readings->availableStorage()))
                               : std::nullopt,
                      sources);
            break;
    }
}

void describeSensors(MeterContent& content, const MenuBarReadings* readings, SensorsReadout readout,
                     const MeterSources& sources) {
    switch (readout) {
        case SensorsReadout::off: break;
        case SensorsReadout::power: {
            // Most PCs measure only the processor package; its power is the best whole-machine
            // figure they have.
            std::optional<double> watts;
            if (readings) {
                watts = readings->systemWatts();
                if (!watts) {
                    watts = readings->cpuWatts();
                }
            }
            showWatts(content, watts, sources);
            break;
        }
        case SensorsReadout::hottest:
            showDegrees(content, readings ? readings->hottestCelsius() : std::nullopt, sources);
            break;
        case SensorsReadout::gpu:
            showDegrees(content, readings ? readings->gpuTemperature() : std::nullopt, sources);
            break;
        case SensorsReadout::fan:
            showRevolutions(content, readings ? readings->fastestFanRPM() : std::nullopt, sources);
            break;
    }
}

}  // namespace

MeterContent meterContent(MonitorSection section, const MenuBarReadings* readings,
                          const MeterSources& sources) {
    const SettingsStore& settings = sources.layout.settings;
    MeterContent content;
    content.section = section;
    content.palette = sources.palette ? sources.palette() : MeterPalette::lightOnDark;
    content.shape = MeterSettings::shape(settings);

    MeterLayoutChoices choices{.labelStyle = MeterSettings::labelStyle(settings, section)};
    const SensorsReadout sensorsReadout = section == MonitorSection::sensors
                                              ? MeterSettings::shownSensorsReadout(settings)
                                              : SensorsReadout::off;
    const bool letters = choices.labelStyle == MeterLabelStyle::letters;
    if (letters) {
        content.letters = lettersFor(section, sensorsReadout);
    }
    // The sensors symbol stands beside the letters too; elsewhere the letters replace it.
    if (!letters || section == MonitorSection::sensors) {
        content.symbol = sectionIcon(section);
    }

    switch (section) {
        case MonitorSection::cpu: describeCPU(content, readings, sources, choices); break;
        case MonitorSection::memory: describeMemory(content, readings, sources, choices); break;
        case MonitorSection::storage: describeStorage(content, readings, sources, choices); break;
        case MonitorSection::sensors:
            describeSensors(content, readings, sensorsReadout, sources);
            choices.readoutWidth = textWidth(sensorsReadout);
            break;
    }
    content.columns = MeterLayout::columns(sources.layout, section, choices);
    return content;
}

std::string drawSignature(MonitorSection section, const MenuBarReadings* readings,
                          const MeterSources& sources) {
    return drawSignature(meterContent(section, readings, sources));
}

}  // namespace corvane
