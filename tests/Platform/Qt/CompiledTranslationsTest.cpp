// The translation reader against QTranslator, which wrote the format's rules: every text of
// every language the build compiles, and unusual files lrelease does not write for our sources.

#include "Platform/Linux/CompiledTranslations.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QString>
#include <QTranslator>
#include <QXmlStreamReader>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneShared/BundleDirectory.h"
#include "tests/Platform/Linux/QmFileBuilder.h"

namespace corvane {
namespace {

using testing::QmFileBuilder;
using testing::utf16BigEndian;

/// What the Qt-based lookup answered: an empty text counts as none.
std::optional<std::string> qtAnswer(const QTranslator& translator, const std::string& context,
                                    const std::string& key) {
    const QString text = translator.translate(context.c_str(), key.c_str());
    return text.isEmpty() ? std::nullopt : std::optional(text.toStdString());
}

struct SourceText {
    std::string context;
    std::string source;
};

/// Every (context, source text) of a Qt Linguist source file.
std::vector<SourceText> sourceTexts(const std::filesystem::path& tsFile) {
    QFile file(QString::fromStdString(tsFile.string()));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << tsFile;
    QXmlStreamReader xml(&file);
    std::vector<SourceText> texts;
    std::string context;
    bool inMessage = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"message") {
            inMessage = true;
        } else if (xml.isEndElement() && xml.name() == u"message") {
            inMessage = false;
        } else if (xml.isStartElement() && xml.name() == u"name" && !inMessage) {
            context = xml.readElementText().toStdString();
        } else if (xml.isStartElement() && xml.name() == u"source") {
            texts.push_back({context, xml.readElementText().toStdString()});
        }
    }
    EXPECT_FALSE(xml.hasError()) << tsFile << ": " << xml.errorString().toStdString();
    return texts;
}

TEST(CompiledTranslations, AnswersEveryTextOfEveryLanguageAsQTranslatorDoes) {
    CompiledTranslations translations([](std::string_view language) {
        return BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
    });
    int languages = 0;
    for (const auto& entry : std::filesystem::directory_iterator(CORVANE_TRANSLATION_SOURCES)) {
        const std::string name = entry.path().stem().string();
        if (entry.path().extension() != ".ts" || !name.starts_with("corvane_")) {
            continue;
        }
        const std::string language = name.substr(std::string_view("corvane_").size());
        const auto compiled = BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
        QTranslator qt;
        ASSERT_TRUE(qt.load(QString::fromStdString(compiled.string()))) << compiled;
        const auto file = CompiledTranslationFile::fromFile(compiled);
        ASSERT_TRUE(file) << compiled;
        ++languages;

        const auto texts = sourceTexts(entry.path());
        ASSERT_GT(texts.size(), 100U) << entry.path();
        for (const auto& [context, source] : texts) {
            SCOPED_TRACE(language + " " + source);
            const auto expected = qtAnswer(qt, context, source);
            // The build refuses unfinished translations, so every text has one.
            ASSERT_TRUE(expected);
            EXPECT_EQ(translations.translation(language, source), expected);
            // Near misses must miss here as they do there, not match a neighbour.
            for (const std::string& other :
                 {source + " ", source.substr(0, source.size() - 1), "x" + source}) {
                EXPECT_EQ(file->translation(context, other), qtAnswer(qt, context, other));
            }
            EXPECT_EQ(file->translation("Other", source), qtAnswer(qt, "Other", source));
        }
    }
    EXPECT_EQ(languages, 4);
}

TEST(CompiledTranslations, UnusualFilesAnswerAsQTranslatorDoes) {
    using Message = QmFileBuilder::Message;
    const auto contextTable = [](std::string_view name) {
        // One bucket, whose names start one two-byte unit past the bucket array.
        return std::string("\x00\x01\x00\x01\x00\x00", 6) + static_cast<char>(name.size()) +
               std::string(name) + '\0';
    };
    struct Row {
        const char* name;
        std::string bytes;
        std::vector<std::pair<std::string, std::string>> lookups;
    };
    const std::string L = "Localizable";
    const std::vector<Row> rows = {
        {"plural forms give the first",
         QmFileBuilder()
             .add(Message{testing::qmHash("%n files"),
                          {{3, utf16BigEndian(u"one")},
                           {3, utf16BigEndian(u"many")},
                           {6, "%n files"},
                           {7, L}}})
             .bytes(),
         {{L, "%n files"}}},
        {"a comment only an empty one matches",
         QmFileBuilder()
             .add(Message{testing::qmHash("Open"),
                          {{3, utf16BigEndian(u"Öffnen")}, {8, "menu"}, {6, "Open"}, {7, L}}})
             .add(Message{testing::qmHash("Close"),
                          {{3, utf16BigEndian(u"Schließen")}, {8, ""}, {6, "Close"}, {7, L}}})
             .add(Message{
                 testing::qmHash("Quit"),
                 {{3, utf16BigEndian(u"Beenden")}, {8, std::string(1, '\0')}, {6, "Quit"}, {7, L}}})
             .bytes(),
         {{L, "Open"}, {L, "Close"}, {L, "Quit"}}},
        {"stored names with their terminator",
         QmFileBuilder()
             .add(Message{
                 testing::qmHash("Quit"),
                 {{3, utf16BigEndian(u"Beenden")}, {6, std::string("Quit\0", 5)}, {7, L + '\0'}}})
             .bytes(),
         {{L, "Quit"}, {L, std::string("Quit\0more", 9)}, {L, "Qui"}}},
        {"colliding hashes and a message without source text",
         QmFileBuilder()
             .add(Message{testing::qmHash("A"), {{3, utf16BigEndian(u"b")}, {6, "B"}, {7, L}}})
             .add(Message{testing::qmHash("A"), {{3, utf16BigEndian(u"a")}, {6, "A"}, {7, L}}})
             .add(Message{testing::qmHash("Z"), {{3, utf16BigEndian(u"any")}, {7, L}}})
             .bytes(),
         {{L, "A"}, {L, "B"}, {L, "Z"}, {"Other", "Z"}}},
        {"surrogates paired and not",
         QmFileBuilder()
             .add(QmFileBuilder::message("pair", u"\xd83d\xde00!"))
             .add(QmFileBuilder::message("high",
                                         u"\xd83d"
                                         u"a"))
             .add(QmFileBuilder::message("low", u"a\xde00"))
             .add(QmFileBuilder::message("last", u"a\xd83d"))
             .bytes(),
         {{L, "pair"}, {L, "high"}, {L, "low"}, {L, "last"}}},
        {"empty, odd and obsolete fields",
         QmFileBuilder()
             .add(QmFileBuilder::message("empty", u""))
             .add(Message{testing::qmHash("odd"), {{3, "abc"}, {6, "odd"}, {7, L}}})
             .add(Message{testing::qmHash("old"),
                          {{5, ""}, {3, utf16BigEndian(u"alt")}, {6, "old"}, {7, L}}})
             .add(Message{testing::qmHash("wide"), {{2, "x"}, {3, utf16BigEndian(u"w")}}})
             .bytes(),
         {{L, "empty"}, {L, "odd"}, {L, "old"}, {L, "wide"}}},
        {"a context table naming the context",
         QmFileBuilder()
             .add(QmFileBuilder::message("Yes", u"Ja"))
             .block(0x2f, contextTable(L))
             .bytes(),
         {{L, "Yes"}, {"Other", "Yes"}}},
        {"a context table without it",
         QmFileBuilder()
             .add(QmFileBuilder::message("Yes", u"Ja"))
             .block(0x2f, contextTable("Other"))
             .bytes(),
         {{L, "Yes"}}},
        {"valid plural rules and an unknown block",
         QmFileBuilder()
             .add(QmFileBuilder::message("Yes", u"Ja"))
             .block(0x88, std::string("\x01\x01\xff\x04\x02\x04", 6))
             .block(0x10, "whatever")
             .bytes(),
         {{L, "Yes"}}},
        {"plural rules missing an operand",
         QmFileBuilder().add(QmFileBuilder::message("Yes", u"Ja")).block(0x88, "\x01").bytes(),
         {{L, "Yes"}}},
        {"plural rules with an unknown operation",
         QmFileBuilder()
             .add(QmFileBuilder::message("Yes", u"Ja"))
             .block(0x88, std::string("\x05\x01", 2))
             .bytes(),
         {{L, "Yes"}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        QTranslator qt;
        const bool qtLoaded = qt.load(reinterpret_cast<const uchar*>(row.bytes.data()),
                                      static_cast<int>(row.bytes.size()));
        const auto file = CompiledTranslationFile::fromBytes(row.bytes);
        ASSERT_EQ(file.has_value(), qtLoaded);
        for (const auto& [context, key] : row.lookups) {
            SCOPED_TRACE(context + " " + key);
            const auto expected = qtLoaded ? qtAnswer(qt, context, key) : std::nullopt;
            EXPECT_EQ(file ? file->translation(context, key) : std::nullopt, expected);
        }
    }
}

TEST(CompiledTranslations, OnlyTheLanguagesExactFileAnswers) {
    CompiledTranslations translations([](std::string_view language) {
        return BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
    });
    struct Row {
        const char* language;
        const char* key;
        std::optional<std::string> text;
    };
    const std::vector<Row> rows = {
        {"de", "Unknown", "Unbekannt"},
        {"ja", "%@ RPM", "%@ 回転/分"},
        {"de", "No such text", std::nullopt},
        {"pt", "Unknown", std::nullopt},
        // Qt's own file lookup would fall back from corvane_de_AT.qm to corvane_de.qm.
        {"de-AT", "Unknown", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.language) + " " + row.key);
        EXPECT_EQ(translations.translation(row.language, row.key), row.text);
    }
    CompiledTranslations none({});
    EXPECT_EQ(none.translation("de", "Unknown"), std::nullopt);
}

// The sensor panel's titles show in the interface language; a title missing from one
// language's file would show in English there only.
TEST(CompiledTranslations, EverySensorCategoryAndPowerChannelTitleIsTranslated) {
    CompiledTranslations translations([](std::string_view language) {
        return BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
    });
    const TextLookup english = [](std::string_view key) { return std::string(key); };
    std::vector<std::string> titles;
    for (const SensorCategory category : allSensorCategories) {
        titles.push_back(title(category, english));
    }
    for (const PowerChannel channel : allPowerChannels) {
        titles.push_back(title(channel, english));
    }
    for (const char* language : {"de", "fr", "ja", "es"}) {
        for (const std::string& text : titles) {
            EXPECT_TRUE(translations.translation(language, text)) << language << " " << text;
        }
    }
}

}  // namespace
}  // namespace corvane
