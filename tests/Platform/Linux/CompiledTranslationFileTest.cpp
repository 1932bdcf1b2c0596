#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Linux/CompiledTranslations.h"
#include "tests/Platform/Linux/QmFileBuilder.h"

namespace corvane {
namespace {

using testing::bigEndian32;
using testing::QmFileBuilder;

const std::vector<std::pair<std::string, std::u16string>> sampleTexts = {
    {"Unknown", u"Unbekannt"}, {"%@ RPM", u"%@ U/min"}, {"Quit", u"Beenden"},
    {"Fan", u"Lüfter"},        {"Memory", u"Speicher"},
};

std::string sampleFile() {
    QmFileBuilder builder;
    for (const auto& [source, translation] : sampleTexts) {
        builder.add(QmFileBuilder::message(source, translation));
    }
    return builder.block(0x88, std::string("\x01\x01", 2)).bytes();
}

// A file cut anywhere either does not load or answers each text as the whole file does or
// not at all: never with bytes from past the cut, never with another text's translation.
TEST(CompiledTranslationFile, FileCutAnywhereAnswersNothingWrong) {
    const std::string whole = sampleFile();
    const auto complete = CompiledTranslationFile::fromBytes(whole);
    ASSERT_TRUE(complete);
    int loaded = 0;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto cut = CompiledTranslationFile::fromBytes(whole.substr(0, length));
        if (!cut) {
            continue;
        }
        ++loaded;
        for (const auto& [source, translation] : sampleTexts) {
            const auto answer = cut->translation("Localizable", source);
            if (answer) {
                EXPECT_EQ(answer, complete->translation("Localizable", source)) << length;
            }
        }
    }
    // A cut at a block boundary (after the hashes, after the messages) still loads.
    EXPECT_GE(loaded, 2);
}

TEST(CompiledTranslationFile, DamagedFilesAnswerNothing) {
    const std::string good = sampleFile();
    const std::string L = "Localizable";
    const std::string A(std::string("\x00\x41", 2));
    const auto message = [](std::vector<std::pair<unsigned char, std::string>> fields,
                            bool withEnd = true) {
        return QmFileBuilder().add({testing::qmHash("Quit"), std::move(fields), withEnd}).bytes();
    };
    // In a file of one message, the 32-bit value at `offset` of the hash entry (0 the hash, 4 the
    // message's offset) or of the message (1 the first field's length) replaced.
    constexpr std::size_t hashEntry = 16 + 5;
    constexpr std::size_t firstMessage = hashEntry + 8 + 5;
    const auto damaged = [](std::string bytes, std::size_t at, std::uint32_t value) {
        return bytes.replace(at, 4, bigEndian32(value));
    };
    std::string badMagic = good;
    badMagic[3] = 'x';
    struct Row {
        const char* name;
        std::string bytes;
        bool loads;
    };
    const std::vector<Row> rows = {
        {"wrong magic", badMagic, false},
        {"a block longer than the file", damaged(good, 16 + 1, 0x7fffffff), false},
        {"too large", good + std::string(CompiledTranslationFile::maximumBytes, '\0'), false},
        {"depends on other files",
         message({{3, A}, {6, "Quit"}, {7, L}}) + std::string("\x96\0\0\0\x01x", 6), false},
        {"hash entry pointing past the messages",
         damaged(message({{3, A}, {6, "Quit"}, {7, L}}), hashEntry + 4, 0xfffffff0), true},
        {"translation longer than the block",
         damaged(message({{3, A}, {6, "Quit"}, {7, L}}), firstMessage + 1, 1000), true},
        {"source text longer than the block",
         damaged(message({{6, "Quit"}, {3, A}, {7, L}}), firstMessage + 1, 0xffffffff), true},
        {"no end tag", message({{3, A}, {6, "Quit"}}, false), true},
        {"context table with no buckets",
         QmFileBuilder()
             .add(QmFileBuilder::message("Quit", u"Beenden"))
             .block(0x2f, std::string("\x00\x00\x00\x01", 4))
             .bytes(),
         true},
        {"context table pointing past its end",
         QmFileBuilder()
             .add(QmFileBuilder::message("Quit", u"Beenden"))
             .block(0x2f, std::string("\x00\x01\x7f\xff", 4))
             .bytes(),
         true},
        {"context name longer than its table",
         QmFileBuilder()
             .add(QmFileBuilder::message("Quit", u"Beenden"))
             .block(0x2f, std::string("\x00\x01\x00\x01\x00\x00\x40Localizable", 18))
             .bytes(),
         true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto file = CompiledTranslationFile::fromBytes(row.bytes);
        ASSERT_EQ(file.has_value(), row.loads);
        if (file) {
            EXPECT_EQ(file->translation("Localizable", "Quit"), std::nullopt);
        }
    }
}

TEST(CompiledTranslationFile, ReadsOnlyRegularFilesOfBoundedSize) {
    const auto folder = std::filesystem::path(::testing::TempDir()) / "compiled-translations";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const auto write = [&](const char* name, const std::string& bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    };
    const auto good = write("good.qm", sampleFile());
    const auto large = write("large.qm", sampleFile() + std::string(4 * 1024 * 1024, '\0'));
    ASSERT_EQ(::mkfifo((folder / "fifo.qm").c_str(), 0600), 0);

    const auto file = CompiledTranslationFile::fromFile(good);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->translation("Localizable", "Fan"), "Lüfter");
    for (const auto& path : {large, folder / "fifo.qm", folder / "missing.qm", folder}) {
        EXPECT_FALSE(CompiledTranslationFile::fromFile(path)) << path;
    }

    // A language whose file does not load is not read again, and others still answer.
    int lookups = 0;
    CompiledTranslations translations([&](std::string_view language) {
        ++lookups;
        return folder / (std::string(language) + ".qm");
    });
    std::filesystem::copy_file(good, folder / "de.qm");
    EXPECT_EQ(translations.translation("de", "Quit"), "Beenden");
    EXPECT_EQ(translations.translation("fr", "Quit"), std::nullopt);
    std::filesystem::copy_file(good, folder / "fr.qm");
    EXPECT_EQ(translations.translation("fr", "Quit"), std::nullopt);
    EXPECT_EQ(translations.translation("de", "Memory"), "Speicher");
    EXPECT_EQ(lookups, 2);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace corvane
