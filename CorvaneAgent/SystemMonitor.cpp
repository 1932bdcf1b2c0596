#include "CorvaneAgent/SystemMonitor.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "CorvaneAgent/GPUStatistics.h"
#include "CorvaneShared/SettingsStore.h"

namespace corvane {

namespace {

constexpr double minimumElapsedSeconds = 0.001;
constexpr double maximumElapsedSeconds = 60.0;
constexpr double timerTolerance = 0.2;

}  // namespace

std::shared_ptr<SystemMonitor> SystemMonitor::create(MonitorServices services) {
    return std::make_shared<SystemMonitor>(Passkey{}, std::move(services));
}

SystemMonitor::SystemMonitor(Passkey, MonitorServices monitorServices)
    : services(std::move(monitorServices)) {
    SystemStatistics& statistics = *services.statistics;
    published.totalMemory = statistics.physicalMemoryBytes().value_or(0);
    published.uptime = statistics.uptimeSeconds().value_or(0);
    published.thermalState = statistics.thermalState().value_or(ThermalState::unknown);
    published.volumeName = services.profile.defaultVolumeName;
    published.chipName = statistics.processorBrand().value_or(services.profile.fallbackChipName);
    published.performanceCoreCount =
        services.coreTiers.empty() ? 0 : services.coreTiers.front().count;
}

SystemMonitor::~SystemMonitor() = default;

void SystemMonitor::start() {
    refresh();
    startTimer();
    observeDisplayState();
}

double SystemMonitor::configuredInterval() const {
    const double interval = services.fixedInterval ? *services.fixedInterval
                                                   : services.settings.number("refreshInterval");
    // Written so that NaN also falls back.
    return interval > 0 ? interval : 1.0;
}

void SystemMonitor::startTimer() {
    timer.reset();
    const double interval = configuredInterval();
    timer = services.runtime.timers.startRepeating(interval, timerTolerance * interval,
                                                   [weakSelf = weak_from_this()] {
                                                       if (auto self = weakSelf.lock()) {
                                                           self->refresh();
                                                       }
                                                   });
}

void SystemMonitor::stopTimer() {
    timer.reset();
    endProcessSamplingStretch();
}

void SystemMonitor::applyInterval() {
    if (timer && timer->interval() != configuredInterval()) {
        startTimer();
    }
}

void SystemMonitor::observeDisplayState() {
    if (!services.displayState) {
        return;
    }
    displaySubscription =
        services.displayState->observe([weakSelf = weak_from_this()](DisplayEvent event) {
            if (auto self = weakSelf.lock()) {
                self->handleDisplayEvent(event);
            }
        });
}

void SystemMonitor::handleDisplayEvent(DisplayEvent event) {
    switch (event) {
        case DisplayEvent::screensDidSleep:
        case DisplayEvent::sessionDidResignActive: stopTimer(); break;
        case DisplayEvent::screensDidWake:
        case DisplayEvent::sessionDidBecomeActive:
            // A wake without a sleep before it must not start a second timer.
            if (!timer) {
                refresh();
                startTimer();
            }
            break;
    }
}

SamplingPlan SystemMonitor::plan() const {
    return computeSamplingPlan(services.settings, openSections);
}

double SystemMonitor::secondsSinceLastRefresh() {
    const TimePoint now = services.runtime.clock.now();
    const auto previous = std::exchange(lastRefresh, now);
    if (!previous) {
        return maximumElapsedSeconds;
    }
    return std::clamp(std::chrono::duration<double>(now - *previous).count(), minimumElapsedSeconds,
                      maximumElapsedSeconds);
}

void SystemMonitor::refresh() {
    const double elapsed = secondsSinceLastRefresh();

    // One read of the kernel's CPU counters serves both the machine and the per-CPU figures,
    // and one memory read serves the memory and the swap figures.
    services.statistics->readCPULoad(cpuSample);
    readCPUUsage(cpuSample.host);
    readCoreUsage(cpuSample);
    const MemorySample memory = services.statistics->readMemory();
    readMemory(memory.vm, elapsed);
    readLoadAverages();
    readSwap(memory.swap);

    const SamplingPlan current = plan();
    lastPlan = current;
    if (current.samplesGPU) {
        readGPU();
    }
    if (refreshes % processAndSensorEvery == 0) {
        if (current.samplesProcesses) {
            refreshProcesses();
        } else {
            endProcessSamplingStretch();
        }
        if (current.smcScope != SamplingPlan::SMCScope::none) {
            readTemperatures(current.smcScope, current.samplesBattery);
        }
    }
    if (refreshes % current.storageEvery == 0) {
        refreshStorage();
    }
    // 2^63 refreshes cannot happen; hold the count rather than let it wrap.
    if (refreshes < std::numeric_limits<std::int64_t>::max()) {
        ++refreshes;
    }

    readUptime();
    readThermalState();
    observers.announceChanges();
    appendHistories();
    observers.announceChanges();

    if (onRefresh) {
        onRefresh();
    }
}

void SystemMonitor::readCPUUsage(const std::optional<HostCPULoad>& host) {
    if (!host) {
        return;
    }
    // The first sample is only a baseline: the figures keep their values until the next.
    const auto previous = std::exchange(previousCPUInfo, *host);
    if (!previous) {
        return;
    }
    if (auto fractions = cpuFractions(*previous, *host)) {
        assign(MonitorField::userCPUUsage, published.userCPUUsage, fractions->user);
        assign(MonitorField::systemCPUUsage, published.systemCPUUsage, fractions->system);
        assign(MonitorField::cpuUsage, published.cpuUsage, fractions->total());
    }
    observers.announceChanges();
}

void SystemMonitor::readCoreUsage(const CPULoadSample& sample) {
    const std::vector<ProcessorLoad>& processors = sample.processors;
    if (processors.empty()) {
        return;
    }
    if (fastCores.size() != processors.size() || fastCoresNumbers != sample.processorNumbers) {
        fastCoresNumbers = sample.processorNumbers;
        fastCores = performanceCoreMask(services.coreTiers, fastCoresNumbers, processors.size());
    }
    coreTicksScratch.clear();
    std::transform(processors.begin(), processors.end(), std::back_inserter(coreTicksScratch),
                   coreTicks);
    std::vector<double> usages(coreTicksScratch.size(), 0.0);
    // A changed CPU count (the first sample, or a CPU going offline) shows zeros for one
    // refresh rather than comparing different CPUs.
    if (previousCoreTicks.size() == coreTicksScratch.size()) {
        for (std::size_t cpu = 0; cpu < usages.size(); ++cpu) {
            usages[cpu] = coreUsage(previousCoreTicks[cpu], coreTicksScratch[cpu]);
        }
    }
    std::swap(previousCoreTicks, coreTicksScratch);
    assign(MonitorField::coreUsages, published.coreUsages, std::move(usages));
    observers.announceChanges();
}

void SystemMonitor::readMemory(const std::optional<VMStatistics>& vm, double elapsed) {
    if (!vm) {
        return;
    }
    assign(MonitorField::wiredMemory, published.wiredMemory, vm->wiredBytes);
    assign(MonitorField::compressedMemory, published.compressedMemory, vm->compressedBytes);
    assign(MonitorField::activeMemory, published.activeMemory, vm->activeBytes);
    assign(MonitorField::cacheMemory, published.cacheMemory, vm->inactiveBytes);
    if (previousPageIns && previousPageOuts) {
        assign(MonitorField::pageInsPerSecond, published.pageInsPerSecond,
               pagingRate(*previousPageIns, vm->pageInBytes, elapsed));
        assign(MonitorField::pageOutsPerSecond, published.pageOutsPerSecond,
               pagingRate(*previousPageOuts, vm->pageOutBytes, elapsed));
    }
    previousPageIns = vm->pageInBytes;
    previousPageOuts = vm->pageOutBytes;
    assign(MonitorField::memoryPressureLevel, published.memoryPressureLevel,
           memoryPressureLevelFromRaw(services.statistics->memoryPressureLevel()));
    // Cached memory is deliberately not counted as used.
    const std::uint64_t used =
        saturatingAdd(saturatingAdd(vm->wiredBytes, vm->compressedBytes), vm->activeBytes);
    assign(MonitorField::usedMemory, published.usedMemory, std::min(used, published.totalMemory));
    observers.announceChanges();
}

void SystemMonitor::readLoadAverages() {
    const auto averages = services.statistics->loadAverages();
    if (!averages) {
        return;
    }
    assign(MonitorField::loadAverages, published.loadAverages, *averages);
    if (!loadHistoryInitialized) {
        // Seed once, so the load graphs start flat at today's level instead of rising from 0.
        assign(MonitorField::loadOneHistory, published.loadOneHistory,
               std::vector<double>(published.loadOneHistory.size(), (*averages)[0]));
        assign(MonitorField::loadFiveHistory, published.loadFiveHistory,
               std::vector<double>(published.loadFiveHistory.size(), (*averages)[1]));
        assign(MonitorField::loadFifteenHistory, published.loadFifteenHistory,
               std::vector<double>(published.loadFifteenHistory.size(), (*averages)[2]));
        loadHistoryInitialized = true;
    }
    observers.announceChanges();
}

void SystemMonitor::readSwap(const std::optional<SwapUsage>& swap) {
    if (!swap) {
        return;
    }
    assign(MonitorField::swapUsed, published.swapUsed, swap->usedBytes);
    assign(MonitorField::swapTotal, published.swapTotal, swap->totalBytes);
    observers.announceChanges();
}

void SystemMonitor::readGPU() {
    if (!services.gpu) {
        return;
    }
    const GPUStatistics figures = gpuStatisticsFrom(services.gpu->performanceStatistics());
    assign(MonitorField::gpuUsage, published.gpuUsage, figures.gpuUsage);
    assign(MonitorField::gpuRendererUsage, published.gpuRendererUsage, figures.gpuRendererUsage);
    assign(MonitorField::gpuTilerUsage, published.gpuTilerUsage, figures.gpuTilerUsage);
    assign(MonitorField::gpuAllocatedMemory, published.gpuAllocatedMemory,
           figures.gpuAllocatedMemory);
    assign(MonitorField::gpuInUseMemory, published.gpuInUseMemory, figures.gpuInUseMemory);
    observers.announceChanges();
}

void SystemMonitor::refreshProcesses() {
    if (!services.processes || processRefreshTask.isRunning()) {
        return;
    }
    runInBackground(
        processRefreshTask,
        [source = services.processes, stretch = processSamplingStretch] {
            return ProcessScanResult{source->sampleProcesses(), stretch};
        },
        &SystemMonitor::applyProcesses);
}

void SystemMonitor::endProcessSamplingStretch() {
    // The snapshot is not cleared here: a scan still running began before the gap and may yet
    // compare with it. Only scans of the next stretch must not.
    ++processSamplingStretch;
}

// By value: the samples are moved out through the binding, which clang-tidy does not see.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void SystemMonitor::applyProcesses(ProcessScanResult scan) {
    auto& [samples, stretch] = scan;
    const TimePoint now = services.runtime.clock.now();
    // The first scan after start, or after sampling was off, has no previous data: every rate
    // is 0 rather than an average over the whole pause.
    if (stretch != previousProcessSamplesStretch) {
        previousProcessSamples.clear();
        previousProcessSampleDate.reset();
    }
    std::optional<double> elapsed;
    if (previousProcessSampleDate) {
        elapsed = std::chrono::duration<double>(now - *previousProcessSampleDate).count();
    }
    ProcessTopLists lists = rankProcesses(samples, previousProcessSamples, elapsed,
                                          services.processes->nanosecondsPerTick());
    assign(MonitorField::topCPUProcesses, published.topCPUProcesses,
           std::move(lists.topCPUProcesses));
    assign(MonitorField::topMemoryProcesses, published.topMemoryProcesses,
           std::move(lists.topMemoryProcesses));
    assign(MonitorField::topDiskProcesses, published.topDiskProcesses,
           std::move(lists.topDiskProcesses));
    assign(MonitorField::diskReadPerSecond, published.diskReadPerSecond, lists.diskReadPerSecond);
    assign(MonitorField::diskWritePerSecond, published.diskWritePerSecond,
           lists.diskWritePerSecond);
    previousProcessSamples = samplesByPid(std::move(samples));
    previousProcessSampleDate = now;
    previousProcessSamplesStretch = stretch;
    observers.announceChanges();
}

bool SystemMonitor::readTemperatures(SamplingPlan::SMCScope scope, bool includeBattery) {
    if (!services.sensors) {
        return false;
    }
    // One pass at a time: the sources keep no lock. A refresh that finds a pass still running
    // leaves it be; the next third tick asks again.
    if (temperatureRefreshTask.isRunning()) {
        return true;
    }
    temperatureRefreshCoverage = {scope, includeBattery};
    std::function<std::optional<BatteryInfo>()> battery =
        includeBattery ? services.battery : nullptr;
    runInBackground(
        temperatureRefreshTask,
        [source = services.sensors, battery = std::move(battery), scope] {
            return SensorReadings{.temperatures = source->temperatures(scope),
                                  .fans = source->fans(),
                                  .power = source->power(),
                                  .battery = battery ? battery() : std::nullopt};
        },
        &SystemMonitor::applySensors);
    return true;
}

void SystemMonitor::settleTemperatures(const SamplingPlan& plan, std::function<void()> completion) {
    // A running pass that already reads what the plan needs is awaited, not doubled.
    const bool runningPassCovers = temperatureRefreshTask.isRunning() &&
                                   temperatureRefreshCoverage.scope >= plan.smcScope &&
                                   (temperatureRefreshCoverage.battery || !plan.samplesBattery);
    if (runningPassCovers) {
        temperatureRefreshTask.whenFinished(std::move(completion));
        return;
    }
    // Otherwise wait for any running pass, then start one with the plan's reach and wait for
    // that. The slot resumes its waiters only while this monitor lives.
    temperatureRefreshTask.whenFinished([this, plan, completion = std::move(completion)]() mutable {
        if (readTemperatures(plan.smcScope, plan.samplesBattery)) {
            temperatureRefreshTask.whenFinished(std::move(completion));
        } else {
            completion();
        }
    });
}

void SystemMonitor::applySensors(SensorReadings readings) {
    std::vector<SensorGroup> groups;
    // Readings of the "other" category appear only in the full list, on purpose.
    for (int index = 0; index < static_cast<int>(SensorCategory::other); ++index) {
        const auto category = static_cast<SensorCategory>(index);
        std::optional<double> hottest;
        for (const TemperatureReading& reading : readings.temperatures) {
            if (reading.category == category && (!hottest || reading.celsius > *hottest)) {
                hottest = reading.celsius;
            }
        }
        if (hottest) {
            groups.push_back({category, *hottest});
        }
    }
    auto celsiusOf = [&groups](SensorCategory category) -> std::optional<double> {
        auto found = std::find_if(groups.begin(), groups.end(), [category](const SensorGroup& g) {
            return g.category == category;
        });
        return found == groups.end() ? std::nullopt : std::optional(found->celsius);
    };
    assign(MonitorField::temperatures, published.temperatures, std::move(readings.temperatures));
    assign(MonitorField::fans, published.fans, std::move(readings.fans));
    assign(MonitorField::power, published.power, std::move(readings.power));
    assign(MonitorField::battery, published.battery, std::move(readings.battery));
    assign(MonitorField::cpuTemperature, published.cpuTemperature, celsiusOf(SensorCategory::cpu));
    assign(MonitorField::gpuTemperature, published.gpuTemperature, celsiusOf(SensorCategory::gpu));
    assign(MonitorField::sensorGroups, published.sensorGroups, std::move(groups));
    observers.announceChanges();
}

void SystemMonitor::refreshStorage() {
    if (storageRefreshTask.isRunning() || !services.storage) {
        return;
    }
    runInBackground(
        storageRefreshTask, [source = services.storage] { return source->readStorage(); },
        &SystemMonitor::applyStorage);
}

void SystemMonitor::applyStorage(std::optional<StorageReading> reading) {
    if (!reading) {
        return;
    }
    assign(MonitorField::totalStorage, published.totalStorage, reading->total);
    assign(MonitorField::availableStorage, published.availableStorage, reading->available);
    assign(MonitorField::volumeName, published.volumeName,
           reading->name.empty() ? services.profile.defaultVolumeName : std::move(reading->name));
    observers.announceChanges();
}

void SystemMonitor::readUptime() {
    if (auto uptime = services.statistics->uptimeSeconds()) {
        assign(MonitorField::uptime, published.uptime, *uptime);
    }
}

void SystemMonitor::readThermalState() {
    assign(MonitorField::thermalState, published.thermalState,
           services.statistics->thermalState().value_or(ThermalState::unknown));
}

void SystemMonitor::append(MonitorField field, std::vector<double>& history, double value) {
    // Histories keep their length for ever: the oldest entry leaves as the newest arrives.
    std::shift_left(history.begin(), history.end(), 1);
    history.back() = value;
    observers.markChanged(field);
}

void SystemMonitor::appendHistories() {
    append(MonitorField::cpuHistory, published.cpuHistory, published.cpuUsage);
    append(MonitorField::userCPUHistory, published.userCPUHistory, published.userCPUUsage);
    append(MonitorField::systemCPUHistory, published.systemCPUHistory, published.systemCPUUsage);
    append(MonitorField::loadOneHistory, published.loadOneHistory, published.loadAverages[0]);
    append(MonitorField::loadFiveHistory, published.loadFiveHistory, published.loadAverages[1]);
    append(MonitorField::loadFifteenHistory, published.loadFifteenHistory,
           published.loadAverages[2]);
}

void SystemMonitor::beginDetailedSampling(MonitorSection section) {
    if (openSections.insert(section).second) {
        observers.markChanged(MonitorField::openPopovers);
        observers.announceChanges();
    }
}

void SystemMonitor::endDetailedSampling(MonitorSection section) {
    if (openSections.erase(section) > 0) {
        observers.markChanged(MonitorField::openPopovers);
        observers.announceChanges();
    }
}

void SystemMonitor::prepareDetailedSampling(MonitorSection section,
                                            std::function<void()> completion) {
    beginDetailedSampling(section);
    const SamplingPlan current = plan();
    if (current.samplesGPU) {
        readGPU();
    }
    // CPU and memory figures are not re-read here: the next tick brings them.
    // Runs now or from the storage slot, which resumes waiters only while this monitor lives.
    auto settle = [this, section, current, completion = std::move(completion)]() mutable {
        const bool showsTemperatures =
            section == MonitorSection::cpu || section == MonitorSection::sensors;
        if (current.smcScope != SamplingPlan::SMCScope::none && showsTemperatures) {
            settleTemperatures(current, std::move(completion));
        } else {
            completion();
        }
    };
    if (section == MonitorSection::storage) {
        refreshStorage();
        storageRefreshTask.whenFinished(std::move(settle));
    } else {
        settle();
    }
}

void SystemMonitor::whenBackgroundWorkFinished(std::function<void()> completion) {
    // The slots belong to this monitor and resume their waiters only while it lives.
    processRefreshTask.whenFinished([this, completion = std::move(completion)]() mutable {
        temperatureRefreshTask.whenFinished([this, completion = std::move(completion)]() mutable {
            storageRefreshTask.whenFinished(std::move(completion));
        });
    });
}

std::string SystemMonitor::thermalStateLabel() const {
    const std::string_view key = thermalStateLabelKey(published.thermalState);
    return services.translate ? services.translate(key) : std::string(key);
}

}  // namespace corvane
