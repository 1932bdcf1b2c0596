#include "Platform/Qt/Updates/UpdateDialogs.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <memory>
#include <utility>

namespace corvane {

namespace {

constexpr int offerWidth = 520;
constexpr int notesHeight = 220;
constexpr int progressWidth = 380;
// A progress bar counts in int; archives are counted in KiB so that any size fits.
constexpr std::uint64_t progressUnit = 1024;

QString fromUtf8(const std::string& text) {
    return QString::fromStdString(text);
}

QLabel* iconLabel(QWidget* parent, QStyle::StandardPixmap icon) {
    auto* label = new QLabel(parent);
    const int size = parent->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    label->setPixmap(parent->style()->standardIcon(icon).pixmap(size, size));
    label->setAlignment(Qt::AlignTop);
    return label;
}

QLabel* headingLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.15);
    label->setFont(font);
    label->setWordWrap(true);
    return label;
}

// Brings a window of a background agent in front of the application the user is in.
void present(QWidget* window) {
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace

UpdateDialogs::UpdateDialogs(TextLookup text) : text(std::move(text)) {}

UpdateDialogs::~UpdateDialogs() {
    delete offer.data();
    delete progress.data();
    delete message.data();
}

QString UpdateDialogs::tr(const char* english) const {
    return fromUtf8(text ? text(english) : std::string(english));
}

void UpdateDialogs::showUpdateFound(const UpdateItem& item, const std::string& installedVersion,
                                    std::function<void(UpdateUserChoice)> reply) {
    delete offer.data();
    auto* dialog = new QDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Software Update"));
    offer = dialog;

    auto* layout = new QHBoxLayout(dialog);
    layout->addWidget(iconLabel(dialog, QStyle::SP_MessageBoxInformation));
    auto* column = new QVBoxLayout;
    layout->addLayout(column, 1);
    column->addWidget(
        headingLabel(tr("Corvane %1 is available — you have %2")
                         .arg(fromUtf8(item.displayVersionString), fromUtf8(installedVersion)),
                     dialog));

    QString notes = fromUtf8(item.releaseNotes);
    if (notes.isEmpty() && item.releaseNotesLink) {
        notes = QStringLiteral("<p><a href=\"%1\">%2</a></p>")
                    .arg(fromUtf8(*item.releaseNotesLink).toHtmlEscaped(),
                         tr("Read the release notes").toHtmlEscaped());
    }
    if (!notes.isEmpty()) {
        auto* browser = new QTextBrowser(dialog);
        // Links open in the user's browser; nothing is fetched into this window.
        browser->setOpenExternalLinks(true);
        browser->setHtml(notes);
        browser->setMinimumHeight(notesHeight);
        column->addWidget(browser, 1);
    }

    auto* buttons = new QHBoxLayout;
    auto* skip = new QPushButton(tr("Skip This Version"), dialog);
    auto* later = new QPushButton(tr("Remind Me Later"), dialog);
    auto* install = new QPushButton(tr("Install and Relaunch"), dialog);
    install->setDefault(true);
    buttons->addWidget(skip);
    buttons->addStretch(1);
    buttons->addWidget(later);
    buttons->addWidget(install);
    column->addLayout(buttons);

    // One answer per offer: the first button, or closing the window, which means "not now".
    auto answer = std::make_shared<std::function<void(UpdateUserChoice)>>(std::move(reply));
    auto choose = [dialog, answer](UpdateUserChoice choice) {
        if (auto pending = std::exchange(*answer, nullptr)) {
            dialog->close();
            pending(choice);
        }
    };
    QObject::connect(skip, &QPushButton::clicked, dialog,
                     [choose] { choose(UpdateUserChoice::skip); });
    QObject::connect(later, &QPushButton::clicked, dialog,
                     [choose] { choose(UpdateUserChoice::dismiss); });
    QObject::connect(install, &QPushButton::clicked, dialog,
                     [choose] { choose(UpdateUserChoice::install); });
    QObject::connect(dialog, &QDialog::finished, dialog,
                     [choose] { choose(UpdateUserChoice::dismiss); });

    dialog->resize(offerWidth, dialog->sizeHint().height());
    present(dialog);
}

void UpdateDialogs::showUpToDate(const std::string& installedVersion) {
    showMessage(tr("You're up to date"),
                tr("Corvane %1 is the newest version available.").arg(fromUtf8(installedVersion)),
                false);
}

void UpdateDialogs::showDownloadStarted(const UpdateItem& item, std::function<void()> cancel) {
    closeProgress();
    offeredVersion = fromUtf8(item.displayVersionString);
    auto* dialog = new QDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Software Update"));
    progress = dialog;

    auto* layout = new QVBoxLayout(dialog);
    progressLabel = new QLabel(tr("Downloading Corvane %1…").arg(offeredVersion), dialog);
    layout->addWidget(progressLabel);
    progressBar = new QProgressBar(dialog);
    progressBar->setTextVisible(false);
    progressBar->setRange(0, 0);
    layout->addWidget(progressBar);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* cancelButton = new QPushButton(tr("Cancel"), dialog);
    buttons->addWidget(cancelButton);
    layout->addLayout(buttons);

    auto stop = std::make_shared<std::function<void()>>(std::move(cancel));
    auto cancelOnce = [stop] {
        if (auto pending = std::exchange(*stop, nullptr)) {
            pending();
        }
    };
    QObject::connect(cancelButton, &QPushButton::clicked, dialog, cancelOnce);
    QObject::connect(dialog, &QDialog::rejected, dialog, cancelOnce);

    dialog->resize(progressWidth, dialog->sizeHint().height());
    present(dialog);
}

void UpdateDialogs::showDownloadProgress(std::uint64_t received, std::uint64_t total) {
    if (!progressBar) {
        return;
    }
    progressBar->setRange(0, static_cast<int>(total / progressUnit));
    progressBar->setValue(static_cast<int>(std::min(received, total) / progressUnit));
}

void UpdateDialogs::showInstalling() {
    if (!progress) {
        return;
    }
    progressLabel->setText(tr("Installing Corvane %1…").arg(offeredVersion));
    progressBar->setRange(0, 0);
    // Past this point the old bundle is being replaced: there is nothing left to cancel.
    for (auto* button : progress->findChildren<QPushButton*>()) {
        button->setEnabled(false);
    }
    QObject::disconnect(progress.data(), &QDialog::rejected, nullptr, nullptr);
}

void UpdateDialogs::showInstalled(const UpdateItem&) {
    closeProgress();
}

void UpdateDialogs::showError(const std::string& description) {
    closeProgress();
    // The reason is written as a log line; as a sentence under a heading it starts upper case.
    QString detail = fromUtf8(description);
    if (!detail.isEmpty()) {
        detail[0] = detail[0].toUpper();
    }
    showMessage(tr("The update could not be completed."), detail, true);
}

void UpdateDialogs::finish() {
    // The cycle is over: an offer still open can no longer be answered, and progress is moot.
    delete offer.data();
    closeProgress();
}

void UpdateDialogs::showMessage(const QString& heading, const QString& detail, bool isError) {
    delete message.data();
    auto* box = new QMessageBox(isError ? QMessageBox::Warning : QMessageBox::Information,
                                tr("Software Update"), heading, QMessageBox::NoButton);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(detail);
    box->addButton(tr("OK"), QMessageBox::AcceptRole);
    message = box;
    present(box);
}

void UpdateDialogs::closeProgress() {
    delete progress.data();
}

}  // namespace corvane
