#pragma once

#include <set>
#include <string_view>

#include "CorvaneShared/MonitorSection.h"

namespace corvane {

class SettingsStore;

/// What one refresh samples.
struct SamplingPlan {
    /// How much of the hardware sensors a pass reads, in increasing order.
    enum class SMCScope { none, menuBar, full };

    bool samplesProcesses = false;
    bool samplesGPU = false;
    bool samplesBattery = false;
    /// Storage is refreshed on every n-th refresh.
    int storageEvery = 15;
    SMCScope smcScope = SMCScope::none;

    friend bool operator==(const SamplingPlan&, const SamplingPlan&) = default;
};

/// Processes are scanned, and the sensors read, on every n-th refresh, starting with the first.
inline constexpr int processAndSensorEvery = 3;

/// "none", "menuBar" or "full".
std::string_view smcScopeRaw(SamplingPlan::SMCScope scope);

/// The plan for the current settings and open panels. Reads the settings fresh on every call.
/// The visibility keys are read untyped on purpose: only a stored `false` hides a meter, so a
/// value of the wrong type still counts as visible.
SamplingPlan computeSamplingPlan(const SettingsStore& settings,
                                 const std::set<MonitorSection>& openPopovers);

}  // namespace corvane
