#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "CorvaneAgent/CPUUsage.h"
#include "CorvaneAgent/FieldObservers.h"
#include "CorvaneAgent/MenuBarReadings.h"
#include "CorvaneAgent/MonitorFields.h"
#include "CorvaneAgent/PlatformProfile.h"
#include "CorvaneAgent/ProcessMetrics.h"
#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneAgent/SensorSource.h"
#include "CorvaneAgent/TaskSlot.h"
#include "CorvaneShared/CoreTopology.h"
#include "CorvaneShared/MonitorSection.h"
#include "Platform/DisplayState.h"
#include "Platform/GPUStatisticsSource.h"
#include "Platform/ProcessSource.h"
#include "Platform/Runtime.h"
#include "Platform/StorageSource.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

class SettingsStore;

/// Everything the monitor samples from and runs on. The settings store and the runtime's
/// services outlive the monitor.
struct MonitorServices {
    SettingsStore& settings;
    Runtime runtime;
    std::unique_ptr<SystemStatistics> statistics = nullptr;
    /// Scanned on a background task; absent: no top lists.
    std::shared_ptr<ProcessSource> processes = nullptr;
    /// Read on a background task; absent: the volume figures stay at 0.
    std::shared_ptr<StorageSource> storage = nullptr;
    /// Read with the refresh while a CPU or sensors panel is open; absent: no GPU figures.
    std::unique_ptr<GPUStatisticsSource> gpu = nullptr;
    /// Temperatures, fans and power, read on a background task; absent on a machine without
    /// readable sensors.
    std::shared_ptr<SensorSource> sensors = nullptr;
    /// Reads the battery on the sensor task (so it must be safe off the main thread); absent,
    /// or answering absent, on a machine without one.
    std::function<std::optional<BatteryInfo>()> battery = nullptr;
    /// Absent: the displays never sleep as far as the monitor knows.
    std::unique_ptr<DisplayStateSource> displayState = nullptr;
    /// The processor's performance levels, fastest first; empty on a homogeneous CPU.
    std::vector<CoreTier> coreTiers = {};
    PlatformProfile profile = PlatformProfile::linuxDesktop();
    /// Looks up the user-visible text for an English key; absent means English.
    std::function<std::string(std::string_view)> translate = nullptr;
    /// Replaces the stored "refreshInterval" (headless runs with an interval of their own).
    std::optional<double> fixedInterval = std::nullopt;
};

/// The single observable model of the agent: samples the machine on a repeating timer and
/// publishes what it read, field by field. A field handed an equal value notifies nobody.
/// Main thread only; background work hands its results back through the main queue.
class SystemMonitor final : public MenuBarReadings,
                            public std::enable_shared_from_this<SystemMonitor> {
    struct Passkey {};

public:
    /// Builds the model: initial values, the machine facts read once, the chip name and the
    /// performance-core count. Sampling begins with `start()`.
    static std::shared_ptr<SystemMonitor> create(MonitorServices services);
    SystemMonitor(Passkey, MonitorServices services);
    ~SystemMonitor() override;

    /// Takes the first sample at once (so the first views have values), starts the timer and
    /// follows the display state. Called once, after any `beginDetailedSampling` that must
    /// shape the first sample.
    void start();

    /// One sampling pass. Starts the background tasks the plan asks for without waiting.
    void refresh();
    /// (Re)creates the repeating timer with the configured interval.
    void startTimer();
    /// Stops the timer, as a display sleep does; the next wake or `startTimer` resumes, and the
    /// first process scan after it has no earlier scan to compare with.
    void stopTimer();
    /// Restarts the timer when the configured interval changed; does nothing while paused.
    void applyInterval();

    /// The plan for the current settings and open panels, computed afresh.
    SamplingPlan plan() const;
    /// The plan the last refresh used; absent before the first.
    const std::optional<SamplingPlan>& lastRefreshPlan() const { return lastPlan; }

    /// A section's panel opened (widens the plan from the next refresh on).
    void beginDetailedSampling(MonitorSection section);
    /// A section's panel closed.
    void endDetailedSampling(MonitorSection section);
    /// Marks the section open and brings what its panel shows first up to date; calls
    /// `completion` on the main thread when done (at once when nothing needs waiting for).
    void prepareDetailedSampling(MonitorSection section, std::function<void()> completion);

    /// Called at the very end of every refresh.
    void setOnRefresh(std::function<void()> callback) { onRefresh = std::move(callback); }
    /// Calls `completion` once no process, sensor or storage task is running.
    void whenBackgroundWorkFinished(std::function<void()> completion);

    const MonitorFields& fields() const { return published; }
    Subscription observe(MonitorField field, std::function<void()> onChange) {
        return observers.observe(field, std::move(onChange));
    }
    const std::set<MonitorSection>& openPopovers() const { return openSections; }
    std::int64_t refreshCount() const { return refreshes; }
    /// The thermal state in words, in the interface language.
    std::string thermalStateLabel() const;
    /// The processor's CPUs: the tiers' sum, else the CPUs the last sample read (none before
    /// the first). The CPU meter gives each its own bar.
    int totalCores() const {
        return corvane::totalCores(services.coreTiers,
                                   static_cast<int>(published.coreUsages.size()));
    }

    /// The processor's performance levels, fastest first; empty on a homogeneous CPU.
    const std::vector<CoreTier>& coreTiers() const { return services.coreTiers; }

    // MenuBarReadings
    double cpuUsage() const override { return published.cpuUsage; }
    const std::vector<double>& coreUsages() const override { return published.coreUsages; }
    int performanceCoreCount() const override { return published.performanceCoreCount; }
    const std::vector<bool>& performanceCores() const override { return fastCores; }
    const std::vector<double>& cpuHistory() const override { return published.cpuHistory; }
    std::optional<double> cpuTemperature() const override { return published.cpuTemperature; }
    std::optional<double> gpuTemperature() const override { return published.gpuTemperature; }
    std::uint64_t swapUsed() const override { return published.swapUsed; }
    std::int64_t availableStorage() const override { return published.availableStorage; }
    std::optional<double> cpuWatts() const override { return corvane::cpuWatts(published); }
    std::optional<double> systemWatts() const override { return corvane::systemWatts(published); }
    std::optional<double> hottestCelsius() const override {
        return corvane::hottestCelsius(published);
    }
    std::optional<double> fastestFanRPM() const override {
        return corvane::fastestFanRPM(published);
    }
    double memoryUsage() const override { return corvane::memoryUsage(published); }
    double memoryPressure() const override { return corvane::memoryPressure(published); }
    double storageUsage() const override { return corvane::storageUsage(published); }

private:
    double configuredInterval() const;
    /// Seconds since the previous refresh, held within the bounds rates are computed over; the
    /// longest before the first. Marks this moment as the last refresh.
    double secondsSinceLastRefresh();
    void observeDisplayState();
    void handleDisplayEvent(DisplayEvent event);

    void readCPUUsage(const std::optional<HostCPULoad>& host);
    void readCoreUsage(const CPULoadSample& sample);
    void readMemory(const std::optional<VMStatistics>& vm, double elapsed);
    void readLoadAverages();
    void readSwap(const std::optional<SwapUsage>& swap);
    void readGPU();
    void refreshProcesses();
    /// A process scan and the sampling stretch it was started in.
    struct ProcessScanResult {
        std::vector<ProcessSample> samples;
        std::uint64_t stretch;
    };
    void applyProcesses(ProcessScanResult scan);
    /// Process sampling stops (no meter or panel needs processes, or sampling pauses): the
    /// next scan has nothing to compare with.
    void endProcessSamplingStretch();
    bool readTemperatures(SamplingPlan::SMCScope scope, bool includeBattery);
    void settleTemperatures(const SamplingPlan& plan, std::function<void()> completion);
    void applySensors(SensorReadings readings);
    void refreshStorage();
    void applyStorage(std::optional<StorageReading> reading);
    void readUptime();
    void readThermalState();
    void appendHistories();

    /// Starts `read` off the main thread as the task of `slot`; its result is handed to `apply`
    /// on the main thread, if this monitor still lives, and the slot is finished after it.
    /// `read` captures only what it reads (a source, a copy of what it needs), never the model.
    template <typename Read, typename Result = std::invoke_result_t<Read>>
    void runInBackground(TaskSlot& slot, Read read, void (SystemMonitor::*apply)(Result)) {
        slot.begin();
        services.runtime.tasks.run([read = std::move(read), apply, &slot,
                                    &queue = services.runtime.mainQueue,
                                    weakSelf = weak_from_this()] {
            queue.post([result = read(), apply, &slot, weakSelf]() mutable {
                // The slot belongs to the monitor: touched only once the monitor is known alive.
                if (auto self = weakSelf.lock()) {
                    (self.get()->*apply)(std::move(result));
                    slot.finish();
                }
            });
        });
    }

    /// Stores `value` and records the change; an equal value is stored silently.
    template <typename T, typename U>
    void assign(MonitorField field, T& slot, U&& value) {
        if (slot == value) {
            return;
        }
        slot = std::forward<U>(value);
        observers.markChanged(field);
    }
    void append(MonitorField field, std::vector<double>& history, double value);

    MonitorServices services;
    MonitorFields published;
    FieldObservers observers;

    std::optional<HostCPULoad> previousCPUInfo;
    std::vector<CoreTicks> previousCoreTicks;
    std::optional<std::uint64_t> previousPageIns;
    std::optional<std::uint64_t> previousPageOuts;
    ProcessSamplesByPid previousProcessSamples;
    std::optional<TimePoint> previousProcessSampleDate;
    /// Counts the stretches of uninterrupted process sampling; a scan compares only with a
    /// snapshot of its own stretch, so that no rate is averaged over a pause.
    std::uint64_t processSamplingStretch = 0;
    std::uint64_t previousProcessSamplesStretch = 0;
    bool loadHistoryInitialized = false;
    CPULoadSample cpuSample;
    std::vector<CoreTicks> coreTicksScratch;
    /// The CPU numbers `fastCores` was worked out for; it changes only when CPUs go on or off.
    std::vector<std::uint32_t> fastCoresNumbers;
    std::vector<bool> fastCores;

    std::unique_ptr<Timer> timer;
    Subscription displaySubscription;
    TaskSlot processRefreshTask;
    TaskSlot temperatureRefreshTask;
    TaskSlot storageRefreshTask;
    /// What the running or last sensor pass covers.
    struct Coverage {
        SamplingPlan::SMCScope scope = SamplingPlan::SMCScope::none;
        bool battery = false;
    } temperatureRefreshCoverage;

    std::int64_t refreshes = 0;
    /// Absent until the first refresh: the distant past.
    std::optional<TimePoint> lastRefresh;
    std::optional<SamplingPlan> lastPlan;
    std::set<MonitorSection> openSections;
    std::function<void()> onRefresh;
};

}  // namespace corvane
