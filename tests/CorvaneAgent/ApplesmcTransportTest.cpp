#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <vector>

#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCReader.h"
#include "Platform/Linux/ApplesmcTransport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

const std::string intelTable = CORVANE_FIXTURES "/smc/macbookpro-2018-intel.json";

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// Plays the kernel's side of an applesmc device in a fixture tree: after every index the
// transport writes, it fills the key_at_index_* files from a recorded table in the formats the
// driver prints (drivers/hwmon/applesmc.c): "%s\n" for name and type, "%d\n" for numbers, the
// raw bytes for the value. It shows the files are read and written as the driver has them;
// it cannot show the driver's refusals (EINVAL for an index past key_count), its timing, or the
// root-only permission, since the tests may run as root.
class FakeApplesmcDriver {
public:
    FakeApplesmcDriver(const std::string& table, bool listsKeyCountKey) {
        // On tmpfs when there is one: ext4 flushes a file truncated and rewritten as it is
        // closed, which turns the thousands of rewrites here into seconds.
        const fs::path parent =
            fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        std::string folder = (parent / "corvane-applesmc-XXXXXX").string();
        root = ::mkdtemp(folder.data());
        device = root / "devices/platform/applesmc.768";
        fs::create_directories(device);
        std::ifstream stream(table);
        for (const auto& entry : nlohmann::json::parse(stream)) {
            if (listsKeyCountKey || entry["key"] != "#KEY") {
                keys.push_back(entry);
            }
        }
        writeFile(device / "key_count", std::to_string(keys.size()) + "\n");
        writeFile(device / "key_at_index", "");
    }
    ~FakeApplesmcDriver() { fs::remove_all(root); }

    void answer() {
        std::ifstream stream(device / "key_at_index");
        std::size_t index = 0;
        stream >> index;
        const auto& entry = keys.at(index);
        const auto hex = entry["bytes"].get<std::string>();
        std::string bytes;
        for (std::size_t i = 0; i < hex.size(); i += 2) {
            bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
        }
        writeFile(device / "key_at_index_name", entry["key"].get<std::string>() + "\n");
        writeFile(device / "key_at_index_type", entry["type"].get<std::string>() + "\n");
        writeFile(device / "key_at_index_data_length", std::to_string(bytes.size()) + "\n");
        writeFile(device / "key_at_index_data", bytes);
    }

    fs::path root;
    fs::path device;

private:
    std::vector<nlohmann::json> keys;
};

TEST(ApplesmcTransport, ReadsAsTheTableTheDeviceWasBuiltFrom) {
    for (const bool listsKeyCountKey : {true, false}) {
        SCOPED_TRACE(listsKeyCountKey ? "#KEY listed" : "#KEY only in key_count");
        FakeApplesmcDriver driver(intelTable, listsKeyCountKey);
        auto transport = ApplesmcTransport::open(driver.root, [&driver] { driver.answer(); });
        ASSERT_TRUE(transport);
        const auto viaDriver = SMCReader::create(std::move(transport));
        auto table = loadRecordedSMCTable(intelTable);
        const auto viaTable = SMCReader::create(
            std::make_unique<RecordedSMCTable>(std::get<RecordedSMCTable>(std::move(table))));

        const auto pass = [](SMCReader& reader) {
            return std::tuple(reader.temperatures(SamplingPlan::SMCScope::full), reader.fans(),
                              reader.power());
        };
        const auto readings = pass(*viaDriver);
        EXPECT_EQ(readings, pass(*viaTable));
        EXPECT_FALSE(std::get<0>(readings).empty() || std::get<1>(readings).empty() ||
                     std::get<2>(readings).empty());
    }
}

TEST(ApplesmcTransport, OpensOnlyADeviceWithAnIndexToWrite) {
    FakeApplesmcDriver driver(intelTable, true);
    EXPECT_FALSE(ApplesmcTransport::open(driver.root / "elsewhere"));
    fs::remove(driver.device / "key_at_index");
    EXPECT_FALSE(ApplesmcTransport::open(driver.root));
}

}  // namespace
}  // namespace corvane
