#include "CorvaneAgent/SMCReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCDecoder.h"

namespace corvane {
namespace {

using Scope = SamplingPlan::SMCScope;

std::unique_ptr<RecordedSMCTable> tableFrom(
    std::variant<RecordedSMCTable, RecordedSMCTableError> loaded) {
    if (const auto* error = std::get_if<RecordedSMCTableError>(&loaded)) {
        ADD_FAILURE() << error->message;
        return nullptr;
    }
    return std::make_unique<RecordedSMCTable>(std::get<RecordedSMCTable>(std::move(loaded)));
}

std::unique_ptr<SMCReader> readerFor(std::string_view json) {
    return SMCReader::create(tableFrom(parseRecordedSMCTable(json)));
}

std::vector<std::string> keysOf(const std::vector<TemperatureReading>& readings) {
    std::vector<std::string> keys;
    for (const auto& reading : readings) {
        keys.push_back(reading.key);
    }
    return keys;
}

struct DiscoveryRow {
    std::string_view name;
    std::string_view keyCountEntry;
    bool enumerated;
};

TEST(SMCReader, KeyCountDecidesBetweenEnumerationAndProbing) {
    // "TW0P" is outside the probed prefixes, so only enumeration finds it; "Tf04" is a CPU key
    // for the probe but an other key for enumeration.
    constexpr std::string_view keys = R"(
        {"key": "TC0P", "type": "sp78", "bytes": "2d80"},
        {"key": "TW0P", "type": "sp78", "bytes": "2a00"},
        {"key": "Tf04", "type": "sp78", "bytes": "3100"},
        {"key": "Tg0D", "type": "sp78", "bytes": "2c00"}])";
    const DiscoveryRow rows[] = {
        {"no #KEY", "", false},
        {"count of 0", R"({"key": "#KEY", "type": "ui32", "bytes": "00000000"},)", false},
        {"count of 19999", R"({"key": "#KEY", "type": "ui32", "bytes": "00004e1f"},)", true},
        {"count of 20000", R"({"key": "#KEY", "type": "ui32", "bytes": "00004e20"},)", false},
        {"count in three bytes", R"({"key": "#KEY", "type": "ui32", "bytes": "000005"},)", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto reader = readerFor("[" + std::string(row.keyCountEntry) + std::string(keys));
        ASSERT_TRUE(reader);
        using Keys = std::vector<std::string>;
        const auto menuBar = keysOf(reader->temperatures(Scope::menuBar));
        const auto full = reader->temperatures(Scope::full);
        if (row.enumerated) {
            EXPECT_EQ(menuBar, (Keys{"Tg0D"}));
            EXPECT_EQ(keysOf(full), (Keys{"Tg0D", "TC0P", "TW0P", "Tf04"}));
        } else {
            EXPECT_EQ(menuBar, (Keys{"Tf04", "Tg0D"}));
            EXPECT_EQ(keysOf(full), (Keys{"Tf04", "Tg0D", "TC0P"}));
        }
        for (const auto& reading : full) {
            EXPECT_EQ(reading.category, SMCDecoder::category(reading.key)) << reading.key;
        }
        EXPECT_TRUE(reader->temperatures(Scope::none).empty());
    }
}

// Records the key of every key-information command, answering each from an empty table.
class ProbeLog final : public SMCTransport {
public:
    int call(const SMCRecord& input, SMCRecord& output) override {
        const auto request = decodeSMCKeyData(input);
        if (request.data8 == SMCCommand::readKeyInfo) {
            probed.push_back(SMCDecoder::keyString(request.key));
        }
        return table.call(input, output);
    }
    RecordedSMCTable table;
    std::vector<std::string> probed;
};

TEST(SMCReader, SilentControllerIsProbedInNestedOrderAndYieldsNothing) {
    auto transport = std::make_unique<ProbeLog>();
    const auto& probed = transport->probed;
    const auto reader = SMCReader::create(std::move(transport));
    ASSERT_TRUE(reader);
    // "#KEY", 10 prefixes × 11 third × 62 fourth characters, ten fans, three power channels.
    ASSERT_EQ(probed.size(), 1u + 6820 + 10 + 3);
    EXPECT_EQ(probed[0], "#KEY");
    EXPECT_EQ(probed[1], "Tp00");
    EXPECT_EQ(probed[63], "Tp10");
    EXPECT_EQ(probed[683], "Te00");
    EXPECT_EQ(probed[6820], "TmMz");
    EXPECT_EQ(probed[6821], "F0Ac");
    EXPECT_EQ(std::vector(probed.end() - 3, probed.end()),
              (std::vector<std::string>{"PSTR", "PPMC", "P3F2"}));
    EXPECT_TRUE(reader->temperatures(Scope::full).empty());
    EXPECT_TRUE(reader->fans().empty());
    EXPECT_TRUE(reader->power().empty());
    EXPECT_FALSE(SMCReader::create(nullptr));
}

TEST(SMCReader, ValuesOfOneToThirtyTwoBytesAreRead) {
    const std::pair<std::string_view, bool> rows[] = {{"32", true}, {"33", false}, {"0", false}};
    for (const auto& [size, readable] : rows) {
        const auto reader = readerFor(R"([{"key": "#KEY", "type": "ui32", "bytes": "00000002"},
            {"key": "TC0P", "type": "sp78", "bytes": "2d80", "size": )" +
                                      std::string(size) + "}]");
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->temperatures(Scope::full).size(), readable ? 1u : 0u) << size;
    }
}

struct FanRow {
    std::string_view name;
    std::string_view speedKeys;
    std::vector<FanReading> expected;
};

TEST(SMCReader, FansAreBoundedAndTakeLimitsByListPosition) {
    // A temperature key keeps the known-key probe, which would add every fan a second time, away.
    constexpr std::string_view limits = R"([{"key": "#KEY", "type": "ui32", "bytes": "00000010"},
        {"key": "TC0P", "type": "sp78", "bytes": "2d80"},
        {"key": "F0Mn", "type": "fpe2", "bytes": "12c0"},
        {"key": "F0Mx", "type": "fpe2", "bytes": "5dc0"},
        {"key": "F1Mn", "type": "fpe2", "bytes": "0000"},
        {"key": "F1Mx", "type": "fpe2", "bytes": "4e20"},)";
    const FanRow rows[] = {
        {"only the second fan",
         R"({"key": "F1Ac", "type": "fpe2", "bytes": "1f40"}])",
         {{"F1Ac", 0, 2000.0, 1200.0, 6000.0}}},
        {"stopped, with a zero minimum",
         R"({"key": "F0Ac", "type": "fpe2", "bytes": "0000"},
            {"key": "F1Ac", "type": "fpe2", "bytes": "0000"}])",
         {{"F0Ac", 0, 0.0, 1200.0, 6000.0}, {"F1Ac", 1, 0.0, std::nullopt, 5000.0}}},
        {"just below 20000 rpm",
         R"({"key": "F0Ac", "type": "flt ", "bytes": "003e9c46"}])",
         {{"F0Ac", 0, 19999.0, 1200.0, 6000.0}}},
        {"at 20000 rpm", R"({"key": "F0Ac", "type": "flt ", "bytes": "00409c46"}])", {}},
        {"temperature type", R"({"key": "F0Ac", "type": "sp78", "bytes": "1f40"}])", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto reader = readerFor(std::string(limits) + std::string(row.speedKeys));
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->fans(), row.expected);
    }
}

TEST(SMCReader, PowerKeepsZeroUpToBelowOneThousandWatts) {
    const std::pair<std::string_view, std::optional<double>> rows[] = {
        {R"("flt ", "bytes": "9af97944")", double{999.9f}},
        {R"("flt ", "bytes": "00007a44")", std::nullopt},
        {R"("flt ", "bytes": "00000000")", 0.0},
        {R"("flt ", "bytes": "000000bf")", std::nullopt},
        {R"("fpe2", "bytes": "1f40")", std::nullopt},
    };
    for (const auto& [value, watts] : rows) {
        SCOPED_TRACE(value);
        const auto reader = readerFor(R"([{"key": "PSTR", "type": )" + std::string(value) + "}]");
        ASSERT_TRUE(reader);
        const auto expected = watts ? std::vector<PowerReading>{{PowerChannel::system, *watts}}
                                    : std::vector<PowerReading>{};
        EXPECT_EQ(reader->power(), expected);
    }
}

struct MachineRow {
    std::string_view file;
    std::size_t menuBarReadings;
    std::size_t fullReadings;
    std::size_t powerChannels;
};

TEST(SMCReader, ReadsRecordedMachines) {
    const MachineRow rows[] = {
        // 12 performance-core sensors (a 13th reads 0), 4 efficiency, 6 GPU; in full also 12
        // "Tf", 3 battery, 4 ambient, 3 storage, 4 memory and 17 others (an 18th reads -0.5).
        {"macbookpro-m2pro.json", 22, 65, 3},
        // No "Tp", "Te" or "Tg" keys, so the frequent pass reads nothing; 49 plausible sp78
        // keys; the GPU rail is in a type power does not read.
        {"macbookpro-2018-intel.json", 0, 49, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const auto reader = SMCReader::create(tableFrom(
            loadRecordedSMCTable(std::string(CORVANE_FIXTURES "/smc/") + std::string(row.file))));
        ASSERT_TRUE(reader);
        const auto menuBar = reader->temperatures(Scope::menuBar);
        const auto full = reader->temperatures(Scope::full);
        EXPECT_EQ(menuBar.size(), row.menuBarReadings);
        ASSERT_EQ(full.size(), row.fullReadings);
        EXPECT_TRUE(std::equal(menuBar.begin(), menuBar.end(), full.begin()));
        EXPECT_EQ(reader->power().size(), row.powerChannels);
    }
}

}  // namespace
}  // namespace corvane
