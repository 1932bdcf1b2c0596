#pragma once

#include <QDialog>
#include <QMessageBox>
#include <QPointer>

#include <functional>
#include <string>

#include "CorvaneShared/TextLookup.h"
#include "Platform/Qt/Updates/UpdateUserDriver.h"

class QLabel;
class QProgressBar;

namespace corvane {

/// The update windows of the menu-bar agent: the offer ("Corvane 2.1 is available — you have
/// 2.0", the release notes, "Skip This Version", "Remind Me Later", "Install and Relaunch"), a
/// progress window while downloading and installing, "You're up to date" after a check the
/// user asked for, and a message when an update fails. Texts go through `text`, so they follow
/// the interface language. Windows are not modal: the menu bar keeps working. Needs a
/// QApplication; main thread only.
class UpdateDialogs final : public UpdateUserDriver {
public:
    explicit UpdateDialogs(TextLookup text);
    ~UpdateDialogs() override;

    UpdateDialogs(const UpdateDialogs&) = delete;
    UpdateDialogs& operator=(const UpdateDialogs&) = delete;

    void showUpdateFound(const UpdateItem& item, const std::string& installedVersion,
                         std::function<void(UpdateUserChoice)> reply) override;
    void showUpToDate(const std::string& installedVersion) override;
    void showDownloadStarted(const UpdateItem& item, std::function<void()> cancel) override;
    void showDownloadProgress(std::uint64_t received, std::uint64_t total) override;
    void showInstalling() override;
    void showInstalled(const UpdateItem& item) override;
    void showError(const std::string& description) override;
    void finish() override;

    /// The windows open now, for tests and pictures; null when closed.
    QDialog* offerWindow() const { return offer.data(); }
    QDialog* progressWindow() const { return progress.data(); }
    QMessageBox* messageWindow() const { return message.data(); }

private:
    QString tr(const char* english) const;
    void showMessage(const QString& heading, const QString& detail, bool isError);
    void closeProgress();

    TextLookup text;
    QPointer<QDialog> offer;
    QPointer<QDialog> progress;
    QPointer<QLabel> progressLabel;
    QPointer<QProgressBar> progressBar;
    QPointer<QMessageBox> message;
    QString offeredVersion;
};

}  // namespace corvane
