#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CorvaneSettings/UI/SettingsPage.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace corvane {

/// How Corvane runs: refresh interval, temperature unit, the panels' look, the interface
/// language, start at login and the master switch.
class GeneralPage final : public SettingsPage {
public:
    /// `languages`: the shipped language codes, offered besides "system".
    GeneralPage(SettingsModel& model, TextLookup translate, std::vector<std::string> languages,
                QWidget* parent = nullptr);

    void refresh() override;

private:
    /// A menu of text values under `key`: English titles and their settings values.
    QComboBox* textMenu(const char* key,
                        std::initializer_list<std::pair<const char*, const char*>> entries,
                        bool (SettingsModel::*write)(std::string_view));

    QComboBox* interval = nullptr;
    QComboBox* temperature = nullptr;
    QComboBox* appearance = nullptr;
    QComboBox* background = nullptr;
    QComboBox* language = nullptr;
    QCheckBox* loginItem = nullptr;
    QLabel* loginProblem = nullptr;
    QCheckBox* enabled = nullptr;
};

}  // namespace corvane
