#include "CorvaneSettings/UI/GeneralPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <functional>
#include <string>

namespace corvane {

namespace {

/// A language's own name for itself ("Deutsch"), capitalised as a menu entry.
QString nativeName(const std::string& code) {
    QString name = QLocale(QString::fromStdString(code)).nativeLanguageName();
    if (name.isEmpty()) {
        return QString::fromStdString(code);
    }
    name[0] = name[0].toUpper();
    return name;
}

QLabel* note(const QString& content) {
    auto* label = new QLabel(content);
    label->setEnabled(false);
    return label;
}

}  // namespace

GeneralPage::GeneralPage(SettingsModel& settingsModel, TextLookup translate,
                         std::vector<std::string> languages, QWidget* parent)
    : SettingsPage(settingsModel, std::move(translate), parent) {
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    layout->addLayout(form);

    enabled = new QCheckBox(text("Show Corvane in the menu bar"));
    enabled->setObjectName("agentEnabled");
    connect(enabled, &QCheckBox::toggled, this, [this](bool on) { model.setAgentEnabled(on); });
    form->addRow(text("Corvane"), enabled);

    loginItem = new QCheckBox(text("Start Corvane at login"));
    loginItem->setObjectName("loginItem");
    loginProblem = note({});
    loginProblem->setObjectName("loginProblem");
    connect(loginItem, &QCheckBox::toggled, this, [this](bool on) {
        const auto problem = model.setLoginItem(on);
        loginProblem->setText(problem ? QString::fromStdString(*problem) : QString());
        loginProblem->setVisible(problem.has_value());
    });
    form->addRow(text("Login"), loginItem);
    form->addRow(QString(), loginProblem);

    interval = new QComboBox;
    interval->setObjectName("refreshInterval");
    for (const double seconds : SettingsModel::refreshIntervals) {
        interval->addItem(QLocale().toString(seconds) + " s", seconds);
    }
    connect(interval, &QComboBox::activated, this,
            [this] { model.setRefreshInterval(interval->currentData().toDouble()); });
    form->addRow(text("Refresh every"), interval);

    temperature = new QComboBox;
    temperature->setObjectName("temperatureUnit");
    for (auto choice :
         {TemperatureChoice::system, TemperatureChoice::celsius, TemperatureChoice::fahrenheit}) {
        temperature->addItem(QString::fromStdString(title(choice, this->translate)),
                             static_cast<int>(choice));
    }
    connect(temperature, &QComboBox::activated, this, [this] {
        model.setTemperatureUnit(
            static_cast<TemperatureChoice>(temperature->currentData().toInt()));
    });
    form->addRow(text("Temperatures"), temperature);

    appearance =
        textMenu("popoverAppearance", {{"System", "system"}, {"Light", "light"}, {"Dark", "dark"}},
                 &SettingsModel::setPanelAppearance);
    form->addRow(text("Panel appearance"), appearance);
    background =
        textMenu("popoverBackground", {{"Translucent", "translucent"}, {"Opaque", "opaque"}},
                 &SettingsModel::setPanelBackground);
    form->addRow(text("Panel background"), background);

    language = new QComboBox;
    language->setObjectName("language");
    language->addItem(text("System"), "system");
    for (const std::string& code : languages) {
        language->addItem(nativeName(code), QString::fromStdString(code));
    }
    connect(language, &QComboBox::activated, this,
            [this] { model.setLanguage(language->currentData().toString().toStdString()); });
    form->addRow(text("Language"), language);
    form->addRow(QString(), note(text("Corvane restarts in the new language.")));
    layout->addStretch();
    // One width for every menu, so that the column reads as one.
    for (QComboBox* combo : {interval, temperature, appearance, background, language}) {
        combo->setMinimumWidth(180);
    }
    refresh();
}

QComboBox* GeneralPage::textMenu(const char* key,
                                 std::initializer_list<std::pair<const char*, const char*>> entries,
                                 bool (SettingsModel::*write)(std::string_view)) {
    auto* menu = new QComboBox;
    menu->setObjectName(key);
    for (const auto& [title, value] : entries) {
        menu->addItem(text(title), QString(value));
    }
    connect(menu, &QComboBox::activated, this, [this, menu, write] {
        const std::string value = menu->currentData().toString().toStdString();
        std::invoke(write, model, value);
    });
    return menu;
}

void GeneralPage::refresh() {
    {
        const QSignalBlocker quiet(enabled);
        enabled->setChecked(model.agentEnabled());
    }
    {
        const QSignalBlocker quiet(loginItem);
        loginItem->setChecked(model.loginItem().state == AutostartEntry::State::on);
    }
    loginProblem->setVisible(!loginProblem->text().isEmpty());
    // An interval set elsewhere that is not offered shows as its own entry.
    const double seconds = model.refreshInterval();
    if (interval->findData(seconds) < 0) {
        interval->addItem(QLocale().toString(seconds) + " s", seconds);
    }
    selectData(*interval, seconds);
    selectData(*temperature, static_cast<int>(model.temperatureUnit()));
    selectData(*appearance, QString::fromStdString(model.panelAppearance()));
    selectData(*background, QString::fromStdString(model.panelBackground()));
    const QString chosen = QString::fromStdString(model.language());
    selectData(*language, language->findData(chosen) < 0 ? QString("system") : chosen);
}

}  // namespace corvane
