#include "CorvaneSettings/UI/MetersPage.h"

#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdlib>

#include "CorvaneAgent/MenuBarMeter.h"
#include "CorvaneShared/MeterReadout.h"
#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/UI/StatusMetricView.h"
#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {

namespace {

constexpr int sectionRole = Qt::UserRole;
// Menu-bar items stand this far apart on the strip.
constexpr int meterSpacing = 4;
// The preview strip: the agent's strip height and colour.
constexpr int stripHeight = 24;

QColor qColor(const SRGBColor& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

QIcon swatch(const SRGBColor& color) {
    QPixmap pixmap(14, 14);
    pixmap.fill(qColor(color));
    return QIcon(pixmap);
}

/// The section's readouts as settings values and English titles, in their order.
std::vector<std::pair<std::string, std::string>> readoutChoices(MonitorSection section) {
    std::vector<std::pair<std::string, std::string>> choices;
    const TextLookup english = [](std::string_view key) { return std::string(key); };
    const auto add = [&](auto readout) {
        choices.emplace_back(std::string(rawValue(readout)), title(readout, english));
    };
    switch (section) {
        case MonitorSection::cpu:
            for (auto r :
                 {CPUReadout::off, CPUReadout::usage, CPUReadout::temperature, CPUReadout::power}) {
                add(r);
            }
            break;
        case MonitorSection::memory:
            for (auto r : {MemoryReadout::off, MemoryReadout::usage, MemoryReadout::pressure,
                           MemoryReadout::swap}) {
                add(r);
            }
            break;
        case MonitorSection::storage:
            for (auto r : {StorageReadout::off, StorageReadout::usage, StorageReadout::free}) {
                add(r);
            }
            break;
        case MonitorSection::sensors:
            for (auto r : {SensorsReadout::off, SensorsReadout::power, SensorsReadout::hottest,
                           SensorsReadout::gpu, SensorsReadout::fan}) {
                add(r);
            }
            break;
    }
    return choices;
}

const char* slotTitle(MeterAccentSlot slot) {
    switch (slot) {
        case MeterAccentSlot::cpu: return "CPU";
        case MeterAccentSlot::cpuFastCore: return "CPU fast cores";
        case MeterAccentSlot::memory: return "Memory";
        case MeterAccentSlot::storage: return "Storage";
    }
    return "";
}

// The entry of an accent menu that opens the colour picker.
constexpr const char* customEntry = "custom";

}  // namespace

MetersPage::MetersPage(SettingsModel& model, const AppLanguage& language, QWidget* parent)
    : SettingsPage(
          model, [&language](std::string_view key) { return language.string(key); }, parent),
      language(language) {
    auto* layout = new QVBoxLayout(this);

    auto* strip = new QFrame;
    strip->setObjectName("meterPreview");
    strip->setFixedHeight(stripHeight + 16);
    strip->setStyleSheet("#meterPreview { background: #202124; border-radius: 6px; }");
    preview = new QHBoxLayout(strip);
    preview->setContentsMargins(8, 8, 8, 8);
    preview->setSpacing(meterSpacing);
    layout->addWidget(strip);

    auto* columns = new QGridLayout;
    columns->addWidget(makeOrderBox(), 0, 0);
    columns->addWidget(makeReadoutBox(), 1, 0);
    columns->addWidget(makeAppearanceBox(), 0, 1);
    columns->addWidget(makeAccentBox(), 1, 1);
    columns->setColumnStretch(0, 1);
    columns->setColumnStretch(1, 1);
    layout->addLayout(columns);
    layout->addStretch();
    refresh();
}

QWidget* MetersPage::makeOrderBox() {
    auto* box = new QGroupBox(text("Menu Bar"));
    auto* layout = new QVBoxLayout(box);
    order = new QListWidget;
    order->setDragDropMode(QAbstractItemView::InternalMove);
    order->setDefaultDropAction(Qt::MoveAction);
    order->setObjectName("meterOrder");
    order->setStyleSheet("#meterOrder::item { padding: 4px; }");
    layout->addWidget(order);
    // The keyboard's way to reorder, for those who cannot drag.
    order->installEventFilter(this);
    auto* hint = new QLabel(
        text("Drag, or press Alt+Up or Alt+Down, to reorder. Hidden meters keep their places."));
    hint->setWordWrap(true);
    hint->setEnabled(false);
    layout->addWidget(hint);

    // Queued: the list finishes its drop before it is rebuilt from the model.
    connect(
        order->model(), &QAbstractItemModel::rowsMoved, this, [this] { applyDisplayedOrder(); },
        Qt::QueuedConnection);
    connect(order, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        const auto section = static_cast<MonitorSection>(item->data(sectionRole).toInt());
        const bool shown = item->checkState() == Qt::Checked;
        if (shown != MeterSettings::showsItem(model.settings(), section)) {
            model.setShown(section, shown);
        }
    });
    return box;
}

QWidget* MetersPage::makeReadoutBox() {
    auto* box = new QGroupBox(text("Readouts"));
    auto* form = new QFormLayout(box);
    for (const MonitorSection section : allMonitorSections) {
        auto* combo = new QComboBox;
        combo->setObjectName(QString("readout-") + sectionKey(section).data());
        for (const auto& [raw, title] : readoutChoices(section)) {
            combo->addItem(text(title), QString::fromStdString(raw));
        }
        connect(combo, &QComboBox::activated, this, [this, section, combo] {
            model.setReadout(section, combo->currentData().toString().toStdString());
        });
        readouts[section] = combo;
        form->addRow(QString::fromStdString(sectionTitle(section, translate)), combo);
    }
    return box;
}

QWidget* MetersPage::makeAppearanceBox() {
    auto* box = new QGroupBox(text("Appearance"));
    auto* form = new QFormLayout(box);
    style = new QComboBox;
    style->setObjectName("meterStyle");
    for (auto value : {MeterStyle::bars, MeterStyle::wave, MeterStyle::compact}) {
        style->addItem(QString::fromStdString(title(value, translate)), static_cast<int>(value));
    }
    shape = new QComboBox;
    shape->setObjectName("meterShape");
    for (auto value : {MeterShape::pill, MeterShape::square}) {
        shape->addItem(QString::fromStdString(title(value, translate)), static_cast<int>(value));
    }
    labels = new QComboBox;
    labels->setObjectName("meterLabelStyle");
    for (auto value : {MeterLabelStyle::icons, MeterLabelStyle::letters}) {
        labels->addItem(QString::fromStdString(title(value, translate)), static_cast<int>(value));
    }
    connect(style, &QComboBox::activated, this,
            [this] { model.setStyle(static_cast<MeterStyle>(style->currentData().toInt())); });
    connect(shape, &QComboBox::activated, this,
            [this] { model.setShape(static_cast<MeterShape>(shape->currentData().toInt())); });
    connect(labels, &QComboBox::activated, this, [this] {
        model.setLabelStyle(static_cast<MeterLabelStyle>(labels->currentData().toInt()));
    });
    form->addRow(text("CPU graph"), style);
    form->addRow(text("Shape"), shape);
    form->addRow(text("Labels"), labels);
    return box;
}

QWidget* MetersPage::makeAccentBox() {
    auto* box = new QGroupBox(text("Accents"));
    auto* form = new QFormLayout(box);
    for (const MeterAccentSlot slot : allMeterAccentSlots) {
        auto* combo = new QComboBox;
        combo->setObjectName(QString("accent-") + accentKey(slot).data());
        for (const NamedAccent name : allNamedAccents) {
            const MeterAccent accent(name);
            combo->addItem(swatch(accent.color()), QString::fromStdString(accent.title(translate)),
                           QString::fromStdString(accent.rawValue()));
        }
        combo->addItem(text("Custom…"), QString(customEntry));
        connect(combo, &QComboBox::activated, this,
                [this, slot, combo] { chooseAccent(slot, *combo); });
        accents[slot] = combo;
        form->addRow(text(slotTitle(slot)), combo);
    }
    return box;
}

void MetersPage::chooseAccent(MeterAccentSlot slot, QComboBox& combo) {
    const QString raw = combo.currentData().toString();
    std::optional<MeterAccent> chosen = MeterAccent::fromRawValue(raw.toStdString());
    if (raw == customEntry) {
        const QColor picked =
            QColorDialog::getColor(qColor(model.accent(slot).color()), this, text("Accent"));
        if (picked.isValid()) {
            chosen = MeterAccent::custom(picked.redF(), picked.greenF(), picked.blueF());
        }
    }
    if (chosen) {
        model.setAccent(slot, *chosen);
    } else {
        refresh();
    }
}

void MetersPage::applyDisplayedOrder() {
    std::vector<MonitorSection> displayed;
    for (int row = 0; row < order->count(); ++row) {
        displayed.push_back(
            static_cast<MonitorSection>(order->item(row)->data(sectionRole).toInt()));
    }
    // The one meter whose move gives the order on screen is the one the user dragged.
    std::vector<MonitorSection> current;
    for (const auto& row : model.sections()) {
        current.push_back(row.section);
    }
    for (std::size_t index = 0; index < displayed.size(); ++index) {
        std::vector<MonitorSection> moved = current;
        std::erase(moved, displayed[index]);
        moved.insert(moved.begin() + static_cast<std::ptrdiff_t>(index), displayed[index]);
        if (moved == displayed && model.moveSection(displayed[index], index)) {
            return;
        }
    }
    refresh();
}

bool MetersPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == order && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() == Qt::AltModifier &&
            (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
            moveCurrentMeter(key->key() == Qt::Key_Up ? -1 : 1);
            return true;
        }
    }
    return SettingsPage::eventFilter(watched, event);
}

void MetersPage::moveCurrentMeter(int step) {
    const int row = order->currentRow();
    if (row < 0) {
        return;
    }
    const int section = order->item(row)->data(sectionRole).toInt();
    // A hidden meter's slot does not move, so a move onto it changes nothing: go on past it.
    for (int target = row + step; target >= 0 && target < order->count(); target += step) {
        if (model.moveSection(static_cast<MonitorSection>(section),
                              static_cast<std::size_t>(target))) {
            break;
        }
    }
    // The list was rebuilt from the model; the moved meter stays the selected one.
    for (int index = 0; index < order->count(); ++index) {
        if (order->item(index)->data(sectionRole).toInt() == section) {
            order->setCurrentRow(index);
        }
    }
}

void MetersPage::refresh() {
    {
        const QSignalBlocker quiet(order);
        order->clear();
        for (const auto& row : model.sections()) {
            auto* item =
                new QListWidgetItem(QString::fromStdString(sectionTitle(row.section, translate)));
            item->setData(sectionRole, static_cast<int>(row.section));
            item->setCheckState(row.shown ? Qt::Checked : Qt::Unchecked);
            Qt::ItemFlags flags =
                Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
            // A hidden meter keeps its slot, so it is not dragged.
            if (row.shown) {
                flags |= Qt::ItemIsDragEnabled;
            }
            item->setFlags(flags);
            order->addItem(item);
        }
        // Four rows, no room for a fifth: the list is the menu bar, not a document.
        order->setFixedHeight(order->sizeHintForRow(0) * order->count() + 2 * order->frameWidth() +
                              4);
    }
    for (const auto& [section, combo] : readouts) {
        selectData(*combo, QString::fromStdString(model.readout(section)));
    }
    selectData(*style, static_cast<int>(MeterSettings::style(model.settings())));
    selectData(*shape, static_cast<int>(MeterSettings::shape(model.settings())));
    selectData(*labels,
               static_cast<int>(MeterSettings::labelStyle(model.settings(), MonitorSection::cpu)));
    for (const auto& [slot, combo] : accents) {
        const MeterAccent accent = model.accent(slot);
        const QSignalBlocker quiet(combo);
        const int custom = combo->findData(QString(customEntry));
        combo->setItemIcon(custom, accent.isCustom() ? swatch(accent.color()) : QIcon());
        combo->setCurrentIndex(accent.isCustom()
                                   ? custom
                                   : combo->findData(QString::fromStdString(accent.rawValue())));
    }
    refreshPreview();
}

void MetersPage::refreshPreview() {
    while (QLayoutItem* item = preview->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    preview->addStretch();
    const MeterSources sources{
        .layout = {model.settings(), SvgSymbols::shared(), [] { return 8; }},
        .units = unitSources(model.settings(), language, &std::getenv),
    };
    const qreal ratio = devicePixelRatioF();
    for (const auto& row : model.sections()) {
        if (!row.shown) {
            continue;
        }
        QImage image =
            StatusMetricView::render(meterContent(row.section, &readings, sources), ratio);
        auto* meter = new QLabel;
        meter->setObjectName(QString("preview-") + sectionKey(row.section).data());
        meter->setPixmap(QPixmap::fromImage(std::move(image)));
        preview->addWidget(meter);
    }
}

}  // namespace corvane
