#include "CorvaneSettings/UI/SettingsWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "CorvaneSettings/UI/GeneralPage.h"
#include "CorvaneSettings/UI/MetersPage.h"
#include "CorvaneSettings/UI/UpdatesPage.h"

namespace corvane {

SettingsWindow::SettingsWindow(SettingsModel& model, const AppLanguage& language, Facts facts,
                               QWidget* parent)
    : QWidget(parent), model(model) {
    const TextLookup translate = [&language](std::string_view key) { return language.string(key); };
    const auto text = [&translate](std::string_view key) {
        return QString::fromStdString(translate(key));
    };
    setWindowTitle(text("Corvane Settings"));
    setObjectName("settingsWindow");

    auto* outer = new QVBoxLayout(this);
    unsaved =
        new QLabel(text("Corvane could not save your last change. It stays here and is "
                        "saved with the next change that goes through."));
    unsaved->setObjectName("unsaved");
    unsaved->setWordWrap(true);
    unsaved->setStyleSheet(
        "#unsaved { background: #fff4ce; color: #5c4400; padding: 6px; border-radius: 4px; }");
    outer->addWidget(unsaved);

    auto* body = new QHBoxLayout;
    outer->addLayout(body, 1);
    sidebar = new QListWidget;
    sidebar->setObjectName("sidebar");
    sidebar->setFixedWidth(150);
    sidebar->setStyleSheet(
        "#sidebar { border: none; border-radius: 6px; }"
        "#sidebar::item { padding: 6px 10px; }");
    auto* content = new QVBoxLayout;
    auto* heading = new QLabel;
    heading->setObjectName("heading");
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.3);
    headingFont.setBold(true);
    heading->setFont(headingFont);
    pages = new QStackedWidget;
    content->addWidget(heading);
    content->addWidget(pages, 1);
    body->addWidget(sidebar);
    body->addSpacing(8);
    body->addLayout(content, 1);

    auto* meters = new MetersPage(model, language);
    auto* general = new GeneralPage(model, translate, language.shipped());
    auto* updates = new UpdatesPage(model, translate, facts.runningVersion);
    boundPages = {meters, general, updates};
    const std::pair<const char*, QWidget*> entries[] = {
        {"Meters", meters},
        {"General", general},
        {"Updates", updates},
        {"About", makeAboutPage(facts.about, translate)},
    };
    for (const auto& [title, page] : entries) {
        // The pages line up with the heading above them.
        page->layout()->setContentsMargins(0, 4, 0, 0);
        sidebar->addItem(text(title));
        pages->addWidget(page);
    }
    connect(sidebar, &QListWidget::currentRowChanged, this, [this, heading](int row) {
        pages->setCurrentIndex(row);
        heading->setText(row >= 0 ? sidebar->item(row)->text() : QString());
    });
    sidebar->setCurrentRow(0);
    modelChanges = model.observe([this] { refresh(); });
    refresh();
}

void SettingsWindow::showPage(int index) {
    sidebar->setCurrentRow(index);
}

int SettingsWindow::currentPage() const {
    return sidebar->currentRow();
}

void SettingsWindow::raiseWindow() {
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    raise();
    activateWindow();
}

void SettingsWindow::refresh() {
    for (SettingsPage* page : boundPages) {
        page->refresh();
    }
    unsaved->setVisible(model.hasUnsavedChanges());
}

}  // namespace corvane
