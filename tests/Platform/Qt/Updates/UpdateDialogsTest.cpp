#include "Platform/Qt/Updates/UpdateDialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace corvane {
namespace {

// German for the texts these tests look at; anything else stays English, like a table that
// lacks a text.
const std::map<std::string, std::string, std::less<>> german = {
    {"Corvane %1 is available — you have %2", "Corvane %1 ist verfügbar – Sie haben %2"},
    {"Skip This Version", "Diese Version überspringen"},
    {"Install and Relaunch", "Installieren und neu starten"},
};

std::string inGerman(std::string_view english) {
    const auto found = german.find(english);
    return found == german.end() ? std::string(english) : found->second;
}

QPushButton* button(QWidget* window, const QString& text) {
    for (auto* candidate : window->findChildren<QPushButton*>()) {
        if (candidate->text() == text) {
            return candidate;
        }
    }
    return nullptr;
}

// Saves what a window looks like when CORVANE_TEST_PICTURES names a folder, for a person to
// look at; the tests themselves check the widgets.
void picture(QWidget* window, const char* name) {
    if (const char* folder = std::getenv("CORVANE_TEST_PICTURES")) {
        QApplication::processEvents();
        window->grab().save(QString::fromUtf8(folder) + "/" + name + ".png");
    }
}

class UpdateDialogsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "corvane-update-dialogs-tests";
        static char* argv[] = {name, nullptr};
        static QApplication application(argc, argv);
    }

    UpdateItem item{
        .displayVersionString = "2.1",
        .versionString = "57",
        .releaseNotes =
            "<h3>What's new</h3><ul><li>Fan speeds on more laptops</li>"
            "<li>Faster start</li></ul>",
    };
};

TEST_F(UpdateDialogsTest, OfferAnswersOnceWithTheButtonChosenAndClosingMeansLater) {
    struct Row {
        const char* button;
        std::optional<UpdateUserChoice> choice;
    };
    const Row rows[] = {
        {"Skip This Version", UpdateUserChoice::skip},
        {"Remind Me Later", UpdateUserChoice::dismiss},
        {"Install and Relaunch", UpdateUserChoice::install},
        {nullptr, UpdateUserChoice::dismiss},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.button ? row.button : "window closed");
        UpdateDialogs dialogs(nullptr);
        int answers = 0;
        std::optional<UpdateUserChoice> answer;
        dialogs.showUpdateFound(item, "2.0", [&](UpdateUserChoice choice) {
            ++answers;
            answer = choice;
        });
        QDialog* offer = dialogs.offerWindow();
        ASSERT_NE(offer, nullptr);
        if (row.button) {
            button(offer, row.button)->click();
        } else {
            offer->close();
        }
        QApplication::processEvents();
        EXPECT_EQ(answer, row.choice);
        EXPECT_EQ(answers, 1);
        dialogs.finish();
        EXPECT_EQ(answers, 1);
    }
}

TEST_F(UpdateDialogsTest, OfferSpeaksTheInterfaceLanguage) {
    UpdateDialogs dialogs(inGerman);
    dialogs.showUpdateFound(item, "2.0", [](UpdateUserChoice) {});
    QDialog* offer = dialogs.offerWindow();
    ASSERT_NE(offer, nullptr);
    picture(offer, "update-offer-de");
    QStringList labels;
    for (auto* label : offer->findChildren<QLabel*>()) {
        labels << label->text();
    }
    EXPECT_TRUE(labels.contains("Corvane 2.1 ist verfügbar – Sie haben 2.0"))
        << labels.join("|").toStdString();
    EXPECT_NE(button(offer, "Diese Version überspringen"), nullptr);
    EXPECT_NE(button(offer, "Installieren und neu starten"), nullptr);
    EXPECT_NE(button(offer, "Remind Me Later"), nullptr);
    EXPECT_TRUE(offer->findChild<QTextBrowser*>()->toPlainText().contains("Faster start"));
}

TEST_F(UpdateDialogsTest, ProgressCountsTheDownloadAndCancelsOnlyBeforeInstalling) {
    UpdateDialogs dialogs(nullptr);
    dialogs.showUpdateFound(item, "2.0", [](UpdateUserChoice) {});
    picture(dialogs.offerWindow(), "update-offer-en");
    int cancels = 0;
    dialogs.showDownloadStarted(item, [&] { ++cancels; });
    QDialog* progress = dialogs.progressWindow();
    ASSERT_NE(progress, nullptr);
    // Sizes beyond what an int counts in bytes still show.
    dialogs.showDownloadProgress(3ull << 30, 4ull << 30);
    auto* bar = progress->findChild<QProgressBar*>();
    EXPECT_EQ(bar->value() * 4, bar->maximum() * 3);
    picture(progress, "update-progress");
    dialogs.showInstalling();
    EXPECT_FALSE(button(progress, "Cancel")->isEnabled());
    progress->reject();
    EXPECT_EQ(cancels, 0);

    dialogs.showDownloadStarted(item, [&] { ++cancels; });
    button(dialogs.progressWindow(), "Cancel")->click();
    dialogs.progressWindow()->reject();
    EXPECT_EQ(cancels, 1);
    dialogs.finish();
    QApplication::processEvents();
    EXPECT_EQ(dialogs.progressWindow(), nullptr);
    EXPECT_EQ(dialogs.offerWindow(), nullptr);
}

TEST_F(UpdateDialogsTest, UpToDateAndFailureAreMessages) {
    UpdateDialogs dialogs(nullptr);
    dialogs.showUpToDate("2.0");
    ASSERT_NE(dialogs.messageWindow(), nullptr);
    EXPECT_EQ(dialogs.messageWindow()->text(), "You're up to date");
    EXPECT_EQ(dialogs.messageWindow()->informativeText(),
              "Corvane 2.0 is the newest version available.");
    picture(dialogs.messageWindow(), "update-up-to-date");
    dialogs.showDownloadStarted(item, [] {});
    dialogs.showError("the update's signature does not match its archive and key");
    QApplication::processEvents();
    EXPECT_EQ(dialogs.progressWindow(), nullptr);
    EXPECT_EQ(dialogs.messageWindow()->icon(), QMessageBox::Warning);
    EXPECT_EQ(dialogs.messageWindow()->text(), "The update could not be completed.");
    picture(dialogs.messageWindow(), "update-error");
}

}  // namespace
}  // namespace corvane
