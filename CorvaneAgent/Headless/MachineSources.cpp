#include "CorvaneAgent/Headless/MachineSources.h"

#include <filesystem>
#include <utility>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/BatteryReader.h"
#include "CorvaneAgent/HardwareSensors.h"
#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCReader.h"
#include "Platform/Linux/ApplesmcTransport.h"
#include "Platform/Linux/CPUTopology.h"
#include "Platform/Linux/LinuxGPUStatisticsSource.h"
#include "Platform/Linux/LinuxHardwareMonitor.h"
#include "Platform/Linux/LinuxProcessSource.h"
#include "Platform/Linux/LinuxStorageSource.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "Platform/Linux/PowerSupplyBattery.h"

namespace corvane {

std::variant<std::shared_ptr<SensorSource>, SourceError> chooseSensorSource(
    const AgentOptions& options, const char* environmentTable) {
    std::optional<std::filesystem::path> table = options.smcTable;
    if (!table && environmentTable != nullptr && *environmentTable != '\0') {
        table = std::filesystem::path(environmentTable);
    }
    if (table) {
        auto loaded = loadRecordedSMCTable(*table);
        if (auto* error = std::get_if<RecordedSMCTableError>(&loaded)) {
            return SourceError{"--smc-table: " + error->message};
        }
        auto transport =
            std::make_unique<RecordedSMCTable>(std::move(std::get<RecordedSMCTable>(loaded)));
        return std::shared_ptr<SensorSource>(SMCReader::create(std::move(transport)));
    }
    // An Intel Mac's controller; elsewhere (or without root) it does not open.
    if (auto controller = SMCReader::create(ApplesmcTransport::open(options.sysfs))) {
        return std::shared_ptr<SensorSource>(std::move(controller));
    }
    // Without a platform power meter (RAPL psys), what the battery gives up while discharging
    // is the best measure of the whole machine's draw; on mains power there is none.
    std::shared_ptr<PowerSupplyBattery> battery = PowerSupplyBattery::find(options.sysfs);
    HardwareSensors::SystemDraw systemDraw;
    if (battery) {
        systemDraw = [battery] { return battery->dischargeWatts(); };
    }
    return std::shared_ptr<SensorSource>(HardwareSensors::create(
        std::make_unique<LinuxHardwareMonitor>(options.sysfs), std::move(systemDraw)));
}

MonitorServices machineServices(const AgentOptions& options, SettingsStore& settings,
                                Runtime runtime, std::shared_ptr<SensorSource> sensors) {
    // Looked up on the sensor task's first battery read; the reader is safe on any thread.
    auto batteryReader = std::make_shared<BatteryReader>(
        [sysfs = options.sysfs] { return PowerSupplyBattery::find(sysfs); });
    return {
        .settings = settings,
        .runtime = runtime,
        .statistics = std::make_unique<LinuxSystemStatistics>(options.procfs, options.sysfs),
        .processes = std::make_shared<LinuxProcessSource>(options.procfs),
        .storage = std::make_shared<LinuxStorageSource>(options.procfs, options.sysfs),
        .gpu = std::make_unique<LinuxGPUStatisticsSource>(options.sysfs),
        .sensors = std::move(sensors),
        .battery = [batteryReader] { return batteryReader->read(); },
        // The topology does not change while the agent runs, so it is read once, here.
        .coreTiers = coreTiersFrom(readPerformanceLevels(options.sysfs)),
        .fixedInterval = options.interval,
    };
}

}  // namespace corvane
