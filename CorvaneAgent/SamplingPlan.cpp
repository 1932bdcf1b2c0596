#include "CorvaneAgent/SamplingPlan.h"

#include <array>

#include "CorvaneShared/MeterReadout.h"
#include "CorvaneShared/SettingsStore.h"
#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

bool isVisible(const SettingsStore& settings, MonitorSection section) {
    SettingValue value = settings.object(itemVisibilityKey(section));
    return !(value.is_boolean() && !value.get<bool>());
}

constexpr std::array<EnumName<SamplingPlan::SMCScope>, 3> scopeNames{{
    {SamplingPlan::SMCScope::none, "none"},
    {SamplingPlan::SMCScope::menuBar, "menuBar"},
    {SamplingPlan::SMCScope::full, "full"},
}};

template <typename Readout>
Readout readoutOr(const SettingsStore& settings, std::string_view key,
                  std::optional<Readout> (*parse)(std::string_view), Readout fallback) {
    std::optional<std::string> raw = settings.string(key);
    return raw ? parse(*raw).value_or(fallback) : fallback;
}

}  // namespace

std::string_view smcScopeRaw(SamplingPlan::SMCScope scope) {
    return enumName(scopeNames, scope).raw;
}

SamplingPlan computeSamplingPlan(const SettingsStore& settings,
                                 const std::set<MonitorSection>& openPopovers) {
    auto isOpen = [&](MonitorSection section) { return openPopovers.contains(section); };
    const bool cpuVisible = isVisible(settings, MonitorSection::cpu);
    const bool memoryVisible = isVisible(settings, MonitorSection::memory);
    const bool storageVisible = isVisible(settings, MonitorSection::storage);
    const bool sensorsVisible = isVisible(settings, MonitorSection::sensors);
    const CPUReadout cpuReadout =
        readoutOr(settings, "cpuReadout", &cpuReadoutFromRaw, CPUReadout::temperature);
    const SensorsReadout sensorsReadout =
        readoutOr(settings, "sensorsReadout", &sensorsReadoutFromRaw, SensorsReadout::power);

    SamplingPlan plan;
    plan.samplesProcesses = cpuVisible || memoryVisible || storageVisible ||
                            isOpen(MonitorSection::cpu) || isOpen(MonitorSection::memory) ||
                            isOpen(MonitorSection::storage);
    plan.samplesGPU = isOpen(MonitorSection::cpu) || isOpen(MonitorSection::sensors);
    plan.samplesBattery = isOpen(MonitorSection::sensors);
    plan.storageEvery = isOpen(MonitorSection::storage) ? 3 : 15;

    // The hottest-sensor readout and the sensors panel need every temperature; a CPU or power
    // readout and the CPU panel make do with the CPU and GPU sensors.
    const bool needsEverySensor = isOpen(MonitorSection::sensors) ||
                                  (sensorsVisible && sensorsReadout == SensorsReadout::hottest);
    const bool needsHeadlineSensors = (sensorsVisible && sensorsReadout != SensorsReadout::off) ||
                                      (cpuVisible && (cpuReadout == CPUReadout::temperature ||
                                                      cpuReadout == CPUReadout::power)) ||
                                      isOpen(MonitorSection::cpu);
    if (needsEverySensor) {
        plan.smcScope = SamplingPlan::SMCScope::full;
    } else if (needsHeadlineSensors) {
        plan.smcScope = SamplingPlan::SMCScope::menuBar;
    }
    return plan;
}

}  // namespace corvane
