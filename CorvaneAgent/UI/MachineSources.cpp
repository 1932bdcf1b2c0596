#include "CorvaneAgent/UI/MachineSources.h"

#include <filesystem>
#include <utility>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/RecordedSmcTable.h"
#include "CorvaneAgent/SMCReader.h"
#include "Platform/Linux/ApplesmcTransport.h"
#include "Platform/Linux/LinuxGPUStatisticsSource.h"
#include "Platform/Linux/LinuxProcessSource.h"
#include "Platform/Linux/LinuxStorageSource.h"
#include "Platform/Linux/LinuxSystemStatistics.h"

namespace corvane {

std::variant<std::shared_ptr<SensorSource>, SourceError> chooseSensorSource(
    const AgentOptions& options, const char* environmentTable) {
    std::optional<std::filesystem::path> table = options.smcTable;
    if (!table && environmentTable != nullptr && *environmentTable != '\0') {
        table = std::filesystem::path(environmentTable);
    }
    if (table) {
        auto loaded = loadRecordedSmcTable(*table);
        if (auto* error = std::get_if<RecordedSmcTableError>(&loaded)) {
            return SourceError{"--smc-table: " + error->message};
        }
        auto transport =
            std::make_unique<RecordedSmcTable>(std::move(std::get<RecordedSmcTable>(loaded)));
        return std::shared_ptr<SensorSource>(SMCReader::create(std::move(transport)));
    }
    // An Intel Mac's controller; elsewhere (or without root) it does not open.
    return std::shared_ptr<SensorSource>(SMCReader::create(ApplesmcTransport::open(options.sysfs)));
}

MonitorServices machineServices(const AgentOptions& options, SettingsStore& settings,
                                Runtime runtime, std::shared_ptr<SensorSource> sensors) {
    return {
        .settings = settings,
        .runtime = runtime,
        .statistics = std::make_unique<LinuxSystemStatistics>(options.procfs, options.sysfs),
        .processes = std::make_shared<LinuxProcessSource>(options.procfs),
        .storage = std::make_shared<LinuxStorageSource>(options.procfs, options.sysfs),
        .gpu = std::make_unique<LinuxGPUStatisticsSource>(options.sysfs),
        .sensors = std::move(sensors),
        .fixedInterval = options.interval,
    };
}

}  // namespace corvane
