#pragma once

#include <QWidget>

#include <vector>

#include "CorvaneSettings/SettingsModel.h"
#include "CorvaneSettings/UI/AboutPage.h"
#include "CorvaneShared/AppLanguage.h"

class QLabel;
class QListWidget;
class QStackedWidget;

namespace corvane {

class SettingsPage;

/// The window titled "Corvane Settings": a sidebar of pages (Meters, General, Updates, About)
/// and a line that says when a change could not be saved. Main thread only.
class SettingsWindow final : public QWidget {
public:
    struct Facts {
        AboutFacts about;
        /// The running version with its build, as the Updates page shows it.
        QString runningVersion;
    };

    SettingsWindow(SettingsModel& model, const AppLanguage& language, Facts facts,
                   QWidget* parent = nullptr);

    /// Shows `index` of the sidebar: 0 Meters, 1 General, 2 Updates, 3 About.
    void showPage(int index);
    /// The index of the page shown now.
    int currentPage() const;
    /// Brings the window forward, shown and not minimised.
    void raiseWindow();

private:
    void refresh();

    SettingsModel& model;
    QListWidget* sidebar = nullptr;
    QStackedWidget* pages = nullptr;
    QLabel* unsaved = nullptr;
    std::vector<SettingsPage*> boundPages;
    Subscription modelChanges;
};

}  // namespace corvane
