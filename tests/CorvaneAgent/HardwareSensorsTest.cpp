#include "CorvaneAgent/HardwareSensors.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <string_view>

#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCReader.h"
#include "Platform/Linux/LinuxHardwareMonitor.h"

namespace corvane {
namespace {

using Scope = SamplingPlan::SMCScope;
using Category = SensorCategory;
using std::chrono::seconds;

std::unique_ptr<HardwareSensors> sensorsOn(std::string_view machine) {
    return HardwareSensors::create(std::make_unique<LinuxHardwareMonitor>(
        std::string(CORVANE_FIXTURES) + "/" + std::string(machine) + "/sys"));
}

TEST(HardwareSensors, CategoryFromChipThenLabel) {
    struct Row {
        std::string_view chip, label;
        Category expected;
    };
    const Row rows[] = {
        {"k10temp", "Tccd1", Category::cpu},
        {"amdgpu", "edge", Category::gpu},
        {"spd5118", "", Category::memory},
        {"drivetemp", "", Category::storage},
        {"acpitz", "", Category::other},
        {"nct6798", "SYSTIN", Category::other},
        {"dell_smm", "Ambient", Category::ambient},
        {"BAT0", "", Category::battery},
        {"bigcore0_thermal", "", Category::cpu},
        {"gpu_thermal", "", Category::gpu},
        {"ddr_thermal", "", Category::memory},
        {"npu_thermal", "", Category::other},
        {"applesmc", "Tp0C", Category::cpu},
        {"applesmc", "TC0P", Category::other},
        {"applesmc", "TB0T", Category::battery},
        {"coretempx", "", Category::other},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(hwmonCategory(row.chip, row.label), row.expected) << row.chip << " " << row.label;
    }
}

TEST(HardwareSensors, AverageWattsFromTwoCounterReadings) {
    const TimePoint start;
    constexpr std::uint64_t intelRange = 262143328850;
    struct Row {
        std::string_view name;
        std::uint64_t before, after;
        seconds elapsed;
        std::optional<std::uint64_t> range;
        std::optional<double> expected;
    };
    const Row rows[] = {
        {"steady", 1'000'000, 13'000'000, seconds(2), intelRange, 6.0},
        {"idle", 5'000'000, 5'000'000, seconds(1), intelRange, 0.0},
        {"wrapped", intelRange - 3'000'000, 7'000'000, seconds(1), intelRange, 10.0},
        {"backwards, range unknown", 9'000'000, 1'000'000, seconds(1), std::nullopt, std::nullopt},
        {"forwards, range unknown", 1'000'000, 9'000'000, seconds(2), std::nullopt, 4.0},
        {"previous beyond the range", 900, 100, seconds(1), 800, std::nullopt},
        {"no time passed", 1'000'000, 2'000'000, seconds(0), intelRange, std::nullopt},
        {"long enough to go round twice", 1'000'000, 2'000'000, seconds(263), intelRange,
         std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto watts =
            averageWatts({row.before, start}, {row.after, start + row.elapsed}, row.range);
        ASSERT_EQ(watts.has_value(), row.expected.has_value());
        if (watts) {
            EXPECT_NEAR(*watts, *row.expected, 1e-9);
        }
    }
}

struct MachineRow {
    std::string_view machine;
    std::vector<TemperatureReading> menuBar;
    /// What `full` reads after the `menuBar` readings.
    std::vector<TemperatureReading> others;
    std::vector<FanReading> fans;
    /// The second pass's: the first has no CPU energy to compare with.
    std::vector<PowerReading> power;
};

TEST(HardwareSensors, ReadsEachFixtureMachine) {
    const std::optional<double> none;
    const MachineRow rows[] = {
        {"intel-laptop-hybrid",
         {{"coretemp Package id 0", Category::cpu, 58.0},
          {"coretemp Core 0", Category::cpu, 56.0},
          {"coretemp Core 4", Category::cpu, 57.0},
          {"coretemp Core 16", Category::cpu, 49.0},
          {"coretemp Core 17", Category::cpu, 50.0}},
         {{"acpitz temp1", Category::other, 27.8},
          {"acpitz temp2", Category::other, 46.05},
          {"nvme Composite", Category::storage, 36.85},
          {"nvme Sensor 1", Category::storage, 36.85},
          {"dell_smm CPU", Category::other, 57.0},
          {"dell_smm Ambient", Category::ambient, 36.0},
          {"dell_smm SODIMM", Category::other, 41.0}},
         {{"dell_smm Processor Fan", 0, 2372, none, 4900},
          {"dell_smm Video Fan", 1, 2436, none, 5000}},
         {{PowerChannel::cpu, 0.0}}},
        {"amd-desktop",
         {{"k10temp Tctl", Category::cpu, 52.125},
          {"k10temp Tccd1", Category::cpu, 45.75},
          {"k10temp Tccd2", Category::cpu, 44.5},
          {"amdgpu edge", Category::gpu, 41.0},
          {"amdgpu junction", Category::gpu, 43.0},
          {"amdgpu mem", Category::gpu, 50.0}},
         {{"nvme@0000:02:00.0 Composite", Category::storage, 39.85},
          {"nvme@0000:02:00.0 Sensor 1", Category::storage, 39.85},
          {"nvme@0000:02:00.0 Sensor 2", Category::storage, 47.85},
          {"nvme@0000:05:00.0 Composite", Category::storage, 31.85},
          {"nvme@0000:05:00.0 Sensor 1", Category::storage, 31.85},
          {"nvme@0000:05:00.0 Sensor 2", Category::storage, 34.85},
          {"nct6798 SYSTIN", Category::other, 34.0},
          {"nct6798 CPUTIN", Category::other, 40.5},
          {"nct6798 PECI Agent 0 Calibration", Category::other, 44.0},
          {"spd5118@1-0051 temp1", Category::memory, 38.5},
          {"spd5118@1-0053 temp1", Category::memory, 39.25}},
         {{"amdgpu fan1", 0, 0, none, 3300},
          {"nct6798 fan1", 1, 812, 200, none},
          {"nct6798 fan2", 2, 1023, none, none},
          {"nct6798 fan3", 3, 0, none, none}},
         {{PowerChannel::cpu, 0.0}, {PowerChannel::gpu, 23.0}}},
        {"arm-biglittle-board",
         {{"cpu_thermal temp1", Category::cpu, 41.111},
          {"gpu_thermal temp1", Category::gpu, 40.555}},
         {},
         {{"pwmfan fan1", 0, 3100, none, none}},
         {}},
        {"intel-mac-applesmc",
         {{"Tp0C", Category::cpu, 49.5},
          {"coretemp Package id 0", Category::cpu, 54.0},
          {"coretemp Core 0", Category::cpu, 53.0},
          {"coretemp Core 1", Category::cpu, 52.0}},
         {{"TA0P", Category::ambient, 31.25},
          {"TB0T", Category::battery, 30.5},
          {"TC0D", Category::other, 55.0},
          {"TC0P", Category::other, 52.5},
          {"TG0D", Category::other, 48.0},
          {"TG0P", Category::other, 47.25},
          {"Th1H", Category::other, 45.75},
          {"Tm0P", Category::memory, 40.25}},
         {{"F0Ac", 0, 2159, 2160, 5927}, {"F1Ac", 1, 1998, 2000, 6156}},
         {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.machine);
        const auto sensors = sensorsOn(row.machine);
        ASSERT_TRUE(sensors);
        EXPECT_TRUE(sensors->temperatures(Scope::none).empty());
        EXPECT_EQ(sensors->temperatures(Scope::menuBar), row.menuBar);
        auto full = row.menuBar;
        full.insert(full.end(), row.others.begin(), row.others.end());
        EXPECT_EQ(sensors->temperatures(Scope::full), full);
        EXPECT_EQ(sensors->fans(), row.fans);
        auto firstPass = row.power;
        std::erase_if(firstPass, [](const auto& r) { return r.channel == PowerChannel::cpu; });
        EXPECT_EQ(sensors->power(), firstPass);
        EXPECT_EQ(sensors->power(), row.power);
    }
}

// One chip with the temperature sensors given, each reading its place in the list plus 40
// degrees, and energy counters that tests set between passes.
class FakeMonitor final : public HardwareMonitor {
public:
    FakeMonitor(std::string chip, const std::vector<std::string>& labels,
                std::vector<RAPLDomain> domains = {})
        : chipList{{.name = std::move(chip)}}, domains(std::move(domains)) {
        for (std::size_t i = 0; i < labels.size(); ++i) {
            chipList[0].temperatures.push_back({static_cast<int>(i) + 1, labels[i]});
        }
    }
    const std::vector<HwmonChip>& chips() const override { return chipList; }
    const std::vector<RAPLDomain>& raplDomains() const override { return domains; }
    std::optional<std::int64_t> temperatureMillidegrees(std::size_t, std::size_t sensor) override {
        return static_cast<std::int64_t>(40 + sensor) * 1000;
    }
    HwmonFanSpeeds fanSpeeds(std::size_t, std::size_t) override { return {}; }
    std::optional<std::uint64_t> powerMicrowatts(std::size_t, std::size_t) override {
        return std::nullopt;
    }
    std::optional<EnergySample> energy(std::size_t domain) override {
        const auto found = samples.find(domain);
        return found == samples.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::size_t, EnergySample> samples;

private:
    std::vector<HwmonChip> chipList;
    std::vector<RAPLDomain> domains;
};

TEST(HardwareSensors, ApplesmcKeysReadInTheScopeTheControllerReadsThemIn) {
    // The driver lists the controller's keys in its index order, as enumeration does. "Tf" and
    // "TU" classify as CPU and GPU but are not among the keys the menu bar reads.
    const std::vector<std::string> keys = {"TC0P", "Tf04", "Tp01", "TU0P", "Tg0D", "Te05", "TB0T"};
    std::string table = R"([{"key": "#KEY", "type": "ui32", "bytes": "00000008"})";
    for (std::size_t i = 0; i < keys.size(); ++i) {
        char celsius[24];
        std::snprintf(celsius, sizeof celsius, "%02zx00", 40 + i);  // sp78: whole degrees first
        table += R"(, {"key": ")" + keys[i] + R"(", "type": "sp78", "bytes": ")" + celsius + "\"}";
    }
    table += "]";
    auto loaded = parseRecordedSMCTable(table);
    ASSERT_TRUE(std::holds_alternative<RecordedSMCTable>(loaded));
    const auto controller = SMCReader::create(
        std::make_unique<RecordedSMCTable>(std::get<RecordedSMCTable>(std::move(loaded))));
    const auto hwmon = HardwareSensors::create(std::make_unique<FakeMonitor>("applesmc", keys));
    ASSERT_TRUE(controller && hwmon);
    for (const auto scope : {Scope::menuBar, Scope::full}) {
        SCOPED_TRACE(smcScopeRaw(scope));
        EXPECT_EQ(hwmon->temperatures(scope), controller->temperatures(scope));
    }
    EXPECT_EQ(hwmon->temperatures(Scope::menuBar),
              (std::vector<TemperatureReading>{{"Tp01", Category::cpu, 42.0},
                                               {"Te05", Category::cpu, 45.0},
                                               {"Tg0D", Category::gpu, 44.0}}));
}

TEST(HardwareSensors, NoSourceWithoutAChip) {
    EXPECT_FALSE(sensorsOn("debian12-kvm-x86_64"));
    EXPECT_FALSE(sensorsOn("no-such-machine"));
    EXPECT_FALSE(HardwareSensors::create(nullptr));
}

TEST(HardwareSensors, PackagesAddUpAndEveryOneMustRead) {
    const TimePoint start;
    constexpr std::uint64_t range = 100'000'000'000;
    auto owned = std::make_unique<FakeMonitor>(
        "coretemp", std::vector<std::string>{},
        std::vector<RAPLDomain>{{"package-0", range}, {"dram", range}, {"package-1", range}});
    auto& counters = *owned;
    const auto sensors =
        HardwareSensors::create(std::move(owned), [] { return std::optional(1000.0); });
    const auto pass = [&](std::uint64_t package0, std::optional<std::uint64_t> package1,
                          seconds at) {
        counters.samples = {{0, {package0, start + at}}, {1, {1, start + at}}};
        if (package1) {
            counters.samples[2] = {*package1, start + at};
        }
        return sensors->power();
    };
    // A system draw of 1000 W, from the callback as there is no psys zone, is never shown.
    EXPECT_EQ(pass(0, 0, seconds(0)), std::vector<PowerReading>{});
    EXPECT_EQ(pass(10'000'000, 20'000'000, seconds(1)),
              (std::vector<PowerReading>{{PowerChannel::cpu, 30.0}}));
    EXPECT_EQ(pass(20'000'000, std::nullopt, seconds(2)), std::vector<PowerReading>{});
    // Package 1's baseline is still the reading at 1 s.
    EXPECT_EQ(pass(30'000'000, 40'000'000, seconds(3)),
              (std::vector<PowerReading>{{PowerChannel::cpu, 20.0}}));
}

}  // namespace
}  // namespace corvane
