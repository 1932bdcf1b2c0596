#pragma once

#include <array>
#include <map>

#include "CorvaneSettings/PreviewReadings.h"
#include "CorvaneSettings/UI/SettingsPage.h"
#include "CorvaneShared/AppLanguage.h"

class QComboBox;
class QHBoxLayout;
class QListWidget;

namespace corvane {

/// The meters: their order and visibility, each one's readout, the drawing style, the accents,
/// and a preview drawn as the agent draws its meters.
class MetersPage final : public SettingsPage {
public:
    MetersPage(SettingsModel& model, const AppLanguage& language, QWidget* parent = nullptr);

    void refresh() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeOrderBox();
    QWidget* makeReadoutBox();
    QWidget* makeAppearanceBox();
    QWidget* makeAccentBox();
    void applyDisplayedOrder();
    void moveCurrentMeter(int step);
    void chooseAccent(MeterAccentSlot slot, QComboBox& combo);
    void refreshPreview();

    const AppLanguage& language;
    PreviewReadings readings;
    QListWidget* order = nullptr;
    std::map<MonitorSection, QComboBox*> readouts;
    QComboBox* style = nullptr;
    QComboBox* shape = nullptr;
    QComboBox* labels = nullptr;
    std::map<MeterAccentSlot, QComboBox*> accents;
    QHBoxLayout* preview = nullptr;
};

}  // namespace corvane
