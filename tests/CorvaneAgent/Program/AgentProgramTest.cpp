#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/support/ProgramRun.h"

namespace {

namespace fs = std::filesystem;
using corvane::testing::ProgramRun;
using corvane::testing::runCommand;
using nlohmann::json;

const fs::path fixtures = CORVANE_FIXTURES;

/// The --procfs and --sysfs arguments of a fixture machine (not every tree has a sys part).
std::string rootsOf(const std::string& machine) {
    std::string arguments = "--procfs " + (fixtures / machine / "proc").string();
    if (fs::is_directory(fixtures / machine / "sys")) {
        arguments += " --sysfs " + (fixtures / machine / "sys").string();
    }
    return arguments;
}

/// `text` as one word of a POSIX shell.
std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

/// Runs corvane-agent with a settings directory and suite of this test's own.
class AgentProgramTest : public ::testing::Test {
protected:
    void SetUp() override {
        configHome =
            fs::temp_directory_path() / ("corvane-program-test-" + std::to_string(::getpid()));
        fs::create_directories(configHome / "corvane");
        ::setenv("XDG_CONFIG_HOME", configHome.c_str(), 1);
        ::setenv("CORVANE_SETTINGS_SUITE", "program-test", 1);
        // Texts in English whatever the machine's locale; a test that wants another says so.
        ::setenv("CORVANE_LANGUAGE", "en", 1);
    }
    void TearDown() override { fs::remove_all(configHome); }

    void storeSettings(const std::string& text) {
        std::ofstream(configHome / "corvane" / "program-test.json") << text;
    }

    ProgramRun runAgent(const std::string& arguments) {
        return runCommand(std::string(CORVANE_AGENT_PROGRAM) + " " + arguments,
                          configHome / "stderr");
    }

    json snapshot(const std::string& arguments) {
        ProgramRun run = runAgent("--snapshot --interval 0.01 " + arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return json::parse(run.output, nullptr, false);
    }

    fs::path configHome;
};

TEST_F(AgentProgramTest, SnapshotOfACapturedMachine) {
    json result = snapshot(rootsOf("debian12-kvm-x86_64"));
    ASSERT_TRUE(result.is_object());
    // Values of /proc/meminfo, /proc/stat and /proc/loadavg of that capture.
    EXPECT_EQ(result["totalMemory"], 24684096ull * 1024);
    EXPECT_EQ(result["usedMemory"], (24684096ull - 24353248ull) * 1024);
    EXPECT_EQ(result["swapTotal"], 0);
    EXPECT_EQ(result["coreUsages"].size(), 2u);
    EXPECT_EQ(result["loadAverages"], json::parse("[0.0, 0.04, 0.02]"));
    EXPECT_EQ(result["cpuUsage"], 0.0);  // the counters of a capture never move
    EXPECT_EQ(result["thermalStateLabel"], "Unknown");
    EXPECT_EQ(result["plan"], json::parse(R"({"samplesProcesses": true, "samplesGPU": false,
        "samplesBattery": false, "storageEvery": 15, "smcScope": "menuBar"})"));
}

TEST_F(AgentProgramTest, LabelsFollowTheForcedLanguage) {
    const std::vector<std::string> english = {"Nominal", "Elevated", "High", "Critical", "Unknown"};
    const std::vector<std::string> german = {"Normal", "Erhöht", "Hoch", "Kritisch", "Unbekannt"};
    const std::string roots = rootsOf("debian12-kvm-x86_64");
    const auto label = std::find(english.begin(), english.end(),
                                 snapshot(roots)["thermalStateLabel"].get<std::string>());
    ASSERT_NE(label, english.end());
    ::setenv("CORVANE_LANGUAGE", "de", 1);
    EXPECT_EQ(snapshot(roots)["thermalStateLabel"], german[label - english.begin()]);
}

TEST_F(AgentProgramTest, PlanFollowsTheStoredSettingsAndOpenPanels) {
    struct Row {
        const char* name;
        const char* stored;
        const char* arguments;
        const char* plan;
    };
    const Row rows[] = {
        {"every meter hidden",
         R"({"showCPUItem": false, "showMemoryItem": false, "showStorageItem": false,
             "showSensorsItem": false})",
         "", R"({"samplesProcesses": false, "samplesGPU": false, "samplesBattery": false,
                 "storageEvery": 15, "smcScope": "none"})"},
        {"sensors off, cpu usage, storage panel open",
         R"({"sensorsReadout": "off", "cpuReadout": "usage"})", "--open storage",
         R"({"samplesProcesses": true, "samplesGPU": false, "samplesBattery": false,
             "storageEvery": 3, "smcScope": "none"})"},
        {"corrupt settings file reads as empty", "{not json", "--open sensors",
         R"({"samplesProcesses": true, "samplesGPU": true, "samplesBattery": true,
             "storageEvery": 15, "smcScope": "full"})"},
    };
    const std::string roots = rootsOf("debian12-kvm-x86_64");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        storeSettings(row.stored);
        json result = snapshot(roots + " " + row.arguments);
        EXPECT_EQ(result["plan"], json::parse(row.plan));
    }
}

TEST_F(AgentProgramTest, StreamPrintsOneLinePerRefresh) {
    ProgramRun run =
        runAgent("--stream --refreshes 3 --interval 0.01 " + rootsOf("laptop-zram-zswap-x86_64"));
    ASSERT_EQ(run.status, 0) << run.errors;
    std::istringstream lines(run.output);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        json parsed = json::parse(line, nullptr, false);
        ASSERT_TRUE(parsed.is_object()) << line;
        EXPECT_GT(parsed["compressedMemory"].get<std::uint64_t>(), 0u);
    }
    EXPECT_EQ(count, 3);
}

// The front runs the stream without loading Qt; the desktop program, started directly, runs
// the same session on Qt's loop. Either ends a stream on SIGTERM after a whole line, status 0,
// and a snapshot so interrupted with 128 + 15 and no output.
TEST_F(AgentProgramTest, HeadlessRunsLoadQtOnlyInTheDesktopProgramAndEndOnSIGTERM) {
    // The first line shows the loop runs, and so that its signals are handled.
    const char* streamStarted =
        "for i in $(seq 200); do [ -s \"$out\" ] && break; sleep 0.05; done";
    struct Row {
        const char* program;
        const char* mode;
        const char* waitForStart;
        bool mapsQt;
        int status;
    };
    const Row rows[] = {
        {CORVANE_AGENT_PROGRAM, "--stream --interval 0.05", streamStarted, false, 0},
        {CORVANE_DESKTOP_PROGRAM, "--stream --interval 0.05", streamStarted, true, 0},
        {CORVANE_AGENT_PROGRAM, "--snapshot --refreshes 1000 --interval 0.05", "sleep 1", false,
         143},
        {CORVANE_DESKTOP_PROGRAM, "--snapshot --refreshes 1000 --interval 0.05", "sleep 1", true,
         143},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.program) + " " + row.mode);
        ProgramRun run = runCommand(
            "out=" + shellQuoted((configHome / "out").string()) + "; " + row.program + " " +
                row.mode + " " + rootsOf("debian12-kvm-x86_64") + " >\"$out\" & pid=$!; " +
                row.waitForStart + "; qt=$(grep -c libQt6 /proc/$pid/maps); kill -TERM $pid; " +
                "wait $pid; echo \"$? $qt\"; head -c 1 \"$out\" | wc -c",
            configHome / "stderr");
        std::istringstream words(run.output);
        int status = -1;
        int qtMappings = -1;
        int outputBytes = -1;
        words >> status >> qtMappings >> outputBytes;
        EXPECT_EQ(status, row.status) << run.output << run.errors;
        EXPECT_EQ(qtMappings > 0, row.mapsQt) << qtMappings;
        // A stream printed its lines; an interrupted snapshot prints nothing.
        EXPECT_EQ(outputBytes, row.status == 0 ? 1 : 0);
    }
}

// Without the desktop program beside it, the front still runs the headless modes and refuses
// the others with one line and status 1.
TEST_F(AgentProgramTest, FrontWithoutTheDesktopProgramRefusesTheDesktopModes) {
    const fs::path alone = configHome / "alone" / "bin" / "corvane-agent";
    fs::create_directories(alone.parent_path());
    fs::copy_file(CORVANE_AGENT_PROGRAM, alone);
    const std::string roots = rootsOf("debian12-kvm-x86_64");
    ProgramRun render =
        runCommand(alone.string() + " --render " + (configHome / "render").string() + " " + roots,
                   configHome / "stderr");
    EXPECT_EQ(render.status, 1);
    EXPECT_TRUE(render.errors.starts_with("corvane-agent: ")) << render.errors;
    EXPECT_NE(render.errors.find("libexec/corvane-agent"), std::string::npos) << render.errors;
    EXPECT_EQ(std::count(render.errors.begin(), render.errors.end(), '\n'), 1);
    EXPECT_FALSE(fs::exists(configHome / "render"));

    ProgramRun snapshot =
        runCommand(alone.string() + " --snapshot --interval 0.01 " + roots, configHome / "stderr");
    EXPECT_EQ(snapshot.status, 0) << snapshot.errors;
    EXPECT_TRUE(json::parse(snapshot.output, nullptr, false).is_object());
}

TEST_F(AgentProgramTest, RecordedControllerTablesFeedTheSensorsAsDeepAsThePlanAsks) {
    auto snapshotOf = [&](const char* table, const std::string& more) {
        return snapshot("--smc-table " + (fixtures / "smc" / table).string() + " " + more + " " +
                        rootsOf("debian12-kvm-x86_64"));
    };
    json menuBar = snapshotOf("macbookpro-m2pro.json", "");
    json full = snapshotOf("macbookpro-m2pro.json", "--open sensors");
    EXPECT_EQ(menuBar["plan"]["smcScope"], "menuBar");
    EXPECT_EQ(full["plan"]["smcScope"], "full");
    // The menu-bar scope reads only the CPU and GPU sensors; the full scope reads them first.
    ASSERT_GT(full["temperatures"].size(), menuBar["temperatures"].size());
    for (std::size_t i = 0; i < menuBar["temperatures"].size(); ++i) {
        EXPECT_EQ(full["temperatures"][i], menuBar["temperatures"][i]);
    }
    EXPECT_EQ(menuBar["cpuTemperature"], menuBar["sensorGroups"][0]["celsius"]);
    double hottest = 0;
    for (const auto& group : full["sensorGroups"]) {
        hottest = std::max(hottest, group["celsius"].get<double>());
    }
    EXPECT_EQ(full["hottestCelsius"], hottest);
    EXPECT_FALSE(full["fans"].empty());
    EXPECT_FALSE(full["cpuWatts"].is_null());

    // An Intel Mac names its CPU sensors "TC..": never read for the menu bar, and in the full
    // list they stay ungrouped, so the CPU temperature is absent there.
    json intel = snapshotOf("macbookpro-2018-intel.json", "--open sensors");
    EXPECT_TRUE(snapshotOf("macbookpro-2018-intel.json", "")["temperatures"].empty());
    EXPECT_FALSE(intel["temperatures"].empty());
    EXPECT_TRUE(intel["cpuTemperature"].is_null());
}

TEST_F(AgentProgramTest, DefaultSnapshotComparesTwoProcessScans) {
    // A process of the test's own keeps a core busy, so the machine has CPU time to show.
    ProgramRun run = runCommand("yes > /dev/null & busy=$!; " + std::string(CORVANE_AGENT_PROGRAM) +
                                    " --snapshot --interval 0.1; status=$?; kill $busy; "
                                    "exit $status",
                                configHome / "stderr");
    ASSERT_EQ(run.status, 0) << run.errors;
    const json result = json::parse(run.output, nullptr, false);
    ASSERT_TRUE(result.is_object());
    ASSERT_FALSE(result["topCPUProcesses"].empty());
    EXPECT_GT(result["topCPUProcesses"][0]["cpu"].get<double>(), 0.0);
}

// The storage figures measure the file system the test runs on: no fixture tree stands in for
// statvfs("/"). Their values are replaced by this text, after checking that they are numbers.
constexpr const char* measuredHere = "\"(measured on the machine that runs the test)\"";

/// `text` (the agent's indented snapshot) with the values of the storage figures replaced.
std::string withoutMeasuredValues(std::string text) {
    for (const char* key : {"availableStorage", "totalStorage", "storageUsage"}) {
        const std::string label = "\n  \"" + std::string(key) + "\": ";
        const auto start = text.find(label);
        if (start == std::string::npos) {
            ADD_FAILURE() << key << " is missing";
            continue;
        }
        const auto valueStart = start + label.size();
        const auto valueEnd = text.find_first_of(",\n", valueStart);
        EXPECT_TRUE(
            json::parse(text.substr(valueStart, valueEnd - valueStart), nullptr, false).is_number())
            << key;
        text.replace(valueStart, valueEnd - valueStart, measuredHere);
    }
    return text;
}

// Every fixture machine with every panel open (the widest plan: GPU, battery, every sensor),
// and each recorded controller table: the whole output, byte for byte, against the copy kept in
// tests/fixtures/snapshots. A tree without a proc or sys part is read with the tree itself as
// that root, where none of the files exist, so the test machine's own never leak in.
// CORVANE_UPDATE_SNAPSHOTS=1 rewrites the copies instead; review the difference before keeping it.
TEST_F(AgentProgramTest, SnapshotOfEveryFixtureMachineIsUnchanged) {
    const fs::path snapshots = fixtures / "snapshots";
    const bool update = std::getenv("CORVANE_UPDATE_SNAPSHOTS") != nullptr;
    std::vector<std::pair<std::string, std::string>> runs;
    std::set<fs::path> trees;
    for (const auto& entry : fs::directory_iterator(fixtures)) {
        if (fs::is_directory(entry.path() / "proc") || fs::is_directory(entry.path() / "sys")) {
            trees.insert(entry.path());
        }
    }
    for (const fs::path& tree : trees) {
        const fs::path proc = fs::is_directory(tree / "proc") ? tree / "proc" : tree;
        const fs::path sys = fs::is_directory(tree / "sys") ? tree / "sys" : tree;
        runs.emplace_back(tree.filename().string(), "--procfs " + proc.string() + " --sysfs " +
                                                        sys.string() +
                                                        " --open cpu --open memory"
                                                        " --open storage --open sensors");
    }
    for (const char* table : {"macbookpro-2018-intel", "macbookpro-m2pro"}) {
        runs.emplace_back(std::string("smc-") + table,
                          "--smc-table " + (fixtures / "smc" / table).string() +
                              ".json --open sensors " + rootsOf("debian12-kvm-x86_64"));
    }
    ASSERT_GT(runs.size(), 20u);
    for (const auto& [name, arguments] : runs) {
        SCOPED_TRACE(name);
        ProgramRun run = runAgent("--snapshot --interval 0.01 " + arguments);
        ASSERT_EQ(run.status, 0) << run.errors;
        const std::string output = withoutMeasuredValues(run.output);
        const fs::path golden = snapshots / (name + ".json");
        if (update) {
            fs::create_directories(snapshots);
            std::ofstream(golden, std::ios::binary) << output;
            continue;
        }
        ASSERT_TRUE(fs::is_regular_file(golden))
            << golden << " is missing; run with CORVANE_UPDATE_SNAPSHOTS=1 to write it";
        EXPECT_EQ(output, corvane::testing::readAll(golden));
    }
}

TEST_F(AgentProgramTest, RefusesBadFlagsWithOneLineAndStatusTwo) {
    const fs::path file = configHome / "a-file";
    std::ofstream(file) << "x";
    const fs::path fifo = configHome / "a-fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const fs::path unmade = configHome / "render-here";
    const std::string machine = " " + rootsOf("debian12-kvm-x86_64");
    for (const std::string& arguments :
         {std::string("--bogus"), std::string("--snapshot --refreshes 0"),
          std::string("--snapshot --refreshes 1000001"), std::string("--stream --interval 0.001"),
          std::string("--open disk"), std::string("--snapshot --interval"),
          std::string("--procfs /nonexistent/corvane"), "--snapshot --procfs " + file.string(),
          "--snapshot --sysfs " + fifo.string(),
          std::string("--snapshot --smc-table /nonexistent/table.json"),
          std::string("--snapshot --smc-table /dev/zero"),
          "--snapshot --smc-table " + configHome.string(),
          "--snapshot --smc-table " + fifo.string() + machine,
          "--render " + fifo.string() + machine, "--render " + unmade.string() + " --open $'\\xff'",
          "--render " + unmade.string() + " --procfs $'/tmp/\\xc3('",
          std::string("$'--bo\\ngus'")}) {
        SCOPED_TRACE(arguments);
        // Through bash for its $'…' quoting of the bytes no plain shell word can hold.
        const ProgramRun run = runCommand(
            "bash -c " + shellQuoted(std::string(CORVANE_AGENT_PROGRAM) + " " + arguments),
            configHome / "stderr");
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.output.empty());
        EXPECT_TRUE(run.errors.starts_with("corvane-agent: ")) << run.errors;
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_FALSE(fs::exists(unmade));
    }
    // Nothing written: no settings file, nothing beside the files the test made.
    EXPECT_EQ(std::distance(fs::directory_iterator(configHome / "corvane"), {}), 0);
}

/// The pixel size a PNG file's header gives; {0, 0} when it is no PNG.
std::pair<int, int> pngSize(const fs::path& path) {
    const std::string bytes = corvane::testing::readAll(path);
    if (bytes.size() < 24 || bytes.compare(1, 3, "PNG") != 0) {
        return {0, 0};
    }
    auto bigEndian = [&](std::size_t at) {
        int value = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            value = value * 256 + static_cast<unsigned char>(bytes[i]);
        }
        return value;
    };
    return {bigEndian(16), bigEndian(20)};
}

// Through the front (CORVANE_AGENT_PROGRAM), which hands --render to the desktop program.
TEST_F(AgentProgramTest, RenderDrawsEveryShownMeterAndItsLayout) {
    struct Row {
        const char* name;
        const char* settings;
        std::vector<std::string> meters;
        double cpuWidth;
    };
    const Row rows[] = {
        // Factory settings, eight CPUs: 7 + 8 × 4.9 + 4 for the bars, the cpu symbol (14)
        // and 1, a gap of 5, a temperature column of 27 and its gap, the last point.
        {"factory settings", "{}", {"storage", "sensors", "memory", "cpu"}, 50.2 + 15 + 5 + 32 + 1},
        {"letters, no CPU readout, memory hidden, own order",
         R"({"meterLabelStyle": "letters", "cpuReadout": "off", "showMemoryItem": false,
             "menuBarOrder": "cpu,storage"})",
         {"cpu", "storage", "sensors"},
         50.2 + 7 + 3 + 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        storeSettings(row.settings);
        const fs::path directory = configHome / "render" / "meters";
        fs::remove_all(directory);
        ProgramRun run =
            runAgent("--render " + directory.string() + " --refreshes 1 --interval 0.01 " +
                     rootsOf("laptop-zram-zswap-x86_64"));
        ASSERT_EQ(run.status, 0) << run.errors;
        // Ordered: the meters stand in menu-bar order.
        const auto layout = nlohmann::ordered_json::parse(
            corvane::testing::readAll(directory / "layout.json"), nullptr, false);
        ASSERT_TRUE(layout.is_object());
        std::vector<std::string> meters;
        for (const auto& [key, meter] : layout["meters"].items()) {
            meters.push_back(key);
            const int width = meter["imageWidth"];
            EXPECT_EQ(width, static_cast<int>(std::ceil(meter["itemWidth"].get<double>() * 2)));
            EXPECT_EQ(meter["imageHeight"], 44);
            const auto expected = std::pair(width, 44);
            EXPECT_EQ(pngSize(directory / ("meter-" + key + ".png")), expected) << key;
            EXPECT_EQ(pngSize(directory / ("meter-" + key + "-light.png")), expected) << key;
        }
        EXPECT_EQ(meters, row.meters);
        EXPECT_NEAR(layout["meters"]["cpu"]["itemWidth"].get<double>(), row.cpuWidth, 1e-9);
        // One bar per CPU of the capture, each as idle as a capture's counters leave it.
        const std::string signature = layout["meters"]["cpu"]["signature"];
        EXPECT_NE(signature.find("|00000000|"), std::string::npos) << signature;
        const bool memoryShown = std::find(meters.begin(), meters.end(), "memory") != meters.end();
        EXPECT_EQ(fs::exists(directory / "meter-memory.png"), memoryShown);
    }
}

TEST_F(AgentProgramTest, RenderFitsEveryPanelToTheBudget) {
    struct Row {
        const char* budget;
        int step;
        std::optional<double> scroll;
    };
    // A panel taller than 200 at every step scrolls in the budget less header and footer.
    const Row rows[] = {{"100000", 1, std::nullopt}, {"200", 4, 126.0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.budget);
        const fs::path directory = configHome / "render" / "panels";
        fs::remove_all(directory);
        ProgramRun run = runCommand(std::string("CORVANE_PANEL_BUDGET=") + row.budget + " " +
                                        CORVANE_AGENT_PROGRAM + " --render " + directory.string() +
                                        " --open sensors --refreshes 1 --interval 0.01 " +
                                        rootsOf("intel-laptop-hybrid"),
                                    configHome / "stderr");
        ASSERT_EQ(run.status, 0) << run.errors;
        const auto layout =
            json::parse(corvane::testing::readAll(directory / "layout.json"), nullptr, false);
        for (const char* section : {"cpu", "memory", "storage", "sensors"}) {
            const json& panel = layout["panels"][section];
            EXPECT_EQ(panel["step"], row.step) << section;
            EXPECT_EQ(panel["scroll"].is_null() ? std::nullopt
                                                : std::optional(panel["scroll"].get<double>()),
                      row.scroll)
                << section;
            const double height = panel["naturalHeight"];
            EXPECT_GT(height, 200) << section;
            // Drawn at the chosen fit: 300 points wide, as tall as the fit allows, twice over.
            const int drawnHeight = row.scroll ? 200 : static_cast<int>(height);
            const auto expected = std::pair(600, 2 * drawnHeight);
            EXPECT_EQ(pngSize(directory / ("panel-" + std::string(section) + ".png")), expected);
            EXPECT_EQ(pngSize(directory / ("panel-" + std::string(section) + "-light.png")),
                      expected);
        }
    }
}

TEST_F(AgentProgramTest, RenderRefusesADirectoryItCannotWrite) {
    const fs::path file = configHome / "not-a-directory";
    std::ofstream(file) << "x";
    ProgramRun run = runAgent("--render " + file.string() + " --procfs " +
                              (fixtures / "debian12-kvm-x86_64" / "proc").string());
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.output.empty());
    EXPECT_TRUE(run.errors.starts_with("corvane-agent: --render: ")) << run.errors;
    EXPECT_NE(run.errors.find(file.string()), std::string::npos);
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
}

}  // namespace
