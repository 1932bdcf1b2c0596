// The cost of the controller reader over a recorded Apple-silicon table of a few hundred keys:
// discovery once by enumeration and once by the known-key probe (the same table without
// "#KEY"), then one sensor pass (temperatures, fans, power) of each scope. The table answers
// from memory, so these figures are the reader's own work, without any driver round-trip.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCReader.h"

namespace corvane {
namespace {

const std::string appleSiliconTable = CORVANE_FIXTURES "/smc/macbookpro-m2pro.json";

RecordedSMCTable loadTable(bool withKeyCount) {
    std::ifstream stream(appleSiliconTable);
    auto document = nlohmann::json::parse(stream);
    if (!withKeyCount) {
        document.erase(document.begin());  // "#KEY" sorts first
    }
    auto table = parseRecordedSMCTable(document.dump());
    if (!std::holds_alternative<RecordedSMCTable>(table)) {
        std::abort();
    }
    return std::get<RecordedSMCTable>(std::move(table));
}

// Lends one table to reader after reader, so building the table stays out of the timing.
class BorrowedTable final : public SMCTransport {
public:
    explicit BorrowedTable(RecordedSMCTable& table) : table(table) {}
    int call(const SMCRecord& input, SMCRecord& output) override {
        return table.call(input, output);
    }

private:
    RecordedSMCTable& table;
};

void discover(benchmark::State& state, bool withKeyCount) {
    auto table = loadTable(withKeyCount);
    for (auto _ : state) {
        auto reader = SMCReader::create(std::make_unique<BorrowedTable>(table));
        benchmark::DoNotOptimize(reader);
    }
}

void BM_SMCDiscoveryByEnumeration(benchmark::State& state) {
    discover(state, true);
}
BENCHMARK(BM_SMCDiscoveryByEnumeration)->Unit(benchmark::kMicrosecond);

void BM_SMCDiscoveryByKnownKeys(benchmark::State& state) {
    discover(state, false);
}
BENCHMARK(BM_SMCDiscoveryByKnownKeys)->Unit(benchmark::kMicrosecond);

void sensorPass(benchmark::State& state, SamplingPlan::SMCScope scope) {
    auto table = loadTable(true);
    auto reader = SMCReader::create(std::make_unique<BorrowedTable>(table));
    for (auto _ : state) {
        SensorReadings readings;
        readings.temperatures = reader->temperatures(scope);
        readings.fans = reader->fans();
        readings.power = reader->power();
        benchmark::DoNotOptimize(readings);
    }
}

void BM_SMCMenuBarPass(benchmark::State& state) {
    sensorPass(state, SamplingPlan::SMCScope::menuBar);
}
BENCHMARK(BM_SMCMenuBarPass);

void BM_SMCFullPass(benchmark::State& state) {
    sensorPass(state, SamplingPlan::SMCScope::full);
}
BENCHMARK(BM_SMCFullPass);

}  // namespace
}  // namespace corvane
