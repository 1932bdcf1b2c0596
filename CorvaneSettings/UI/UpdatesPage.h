#pragma once

#include "CorvaneSettings/UI/SettingsPage.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace corvane {

/// Software updates: automatic checks, a check now, the offered and the running version.
class UpdatesPage final : public SettingsPage {
public:
    /// `runningVersion`: the version people read, with its build ("0.1.0 (1)").
    UpdatesPage(SettingsModel& model, TextLookup translate, QString runningVersion,
                QWidget* parent = nullptr);

    void refresh() override;

private:
    QCheckBox* automatic = nullptr;
    QPushButton* checkNow = nullptr;
    QLabel* offer = nullptr;
    QLabel* unavailable = nullptr;
};

}  // namespace corvane
