#pragma once

#include <QComboBox>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <string_view>

#include "CorvaneSettings/SettingsModel.h"
#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// One page of the settings window: its controls bind to the model and show what it reads.
class SettingsPage : public QWidget {
public:
    SettingsPage(SettingsModel& model, TextLookup translate, QWidget* parent = nullptr)
        : QWidget(parent), model(model), translate(std::move(translate)) {}

    /// Shows what the model reads now, without writing anything back.
    virtual void refresh() = 0;

protected:
    /// The translation of an English text.
    QString text(std::string_view english) const {
        return QString::fromStdString(translate(english));
    }

    SettingsModel& model;
    TextLookup translate;
};

/// Selects the entry of `combo` whose data is `value` without telling its listeners; an unknown
/// value selects nothing.
inline void selectData(QComboBox& combo, const QVariant& value) {
    const QSignalBlocker quiet(combo);
    combo.setCurrentIndex(combo.findData(value));
}

}  // namespace corvane
