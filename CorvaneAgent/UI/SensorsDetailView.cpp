#include "CorvaneAgent/UI/SensorsDetailView.h"

#include <cmath>

#include "CorvaneAgent/PanelRules.h"
#include "CorvaneAgent/UI/SensorRows.h"
#include "CorvaneShared/UI/DenseSection.h"
#include "CorvaneShared/UI/MonitorPopover.h"
#include "CorvaneShared/UI/NoteRow.h"
#include "CorvaneShared/UI/PopoverDivider.h"
#include "CorvaneShared/UI/ValueRow.h"

namespace corvane {

namespace {

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

PopoverHue temperatureHue(double celsius) {
    switch (temperatureLevel(celsius)) {
        case TemperatureLevel::warm: return PopoverHue::orange;
        case TemperatureLevel::hot: return PopoverHue::red;
        case TemperatureLevel::normal: break;
    }
    return PopoverHue::primary;
}

// A section's rows that come and go with a list of the model.
QVBoxLayout* rowColumn(DenseSection* section) {
    auto* holder = new QWidget(section);
    holder->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(section->rows()->spacing());
    section->addRow(holder);
    return column;
}

}  // namespace

SensorsDetailView::SensorsDetailView(std::unique_ptr<PanelSource> panelSource,
                                     PanelContext panelContext, QWidget* parent)
    : QWidget(parent), DetailPanelBase(std::move(panelSource)), context(std::move(panelContext)) {
    const PanelMetrics& metrics = context.metrics;
    const UnitSources& units = context.units;
    QVBoxLayout* column = panelColumn(this);

    DenseSection* thermal = addBlock(this, column, context.text("THERMAL STATE"), metrics).section;
    auto* state = thermal->add(new ValueRow(context.text("System"), {}));
    follow({MonitorField::thermalState},
           [this, state] { state->setValue(qt(source->thermalStateLabel())); });

    DenseSection* temperatures =
        addBlock(this, column, context.text("TEMPERATURES"), metrics).section;
    auto* none = temperatures->add(
        new NoteRow(context.text(context.profile.noTemperatureSensors),
                    MonitorPopover::panelWidth - 2 * DenseSection::horizontalMargin));
    QVBoxLayout* groupColumn = rowColumn(temperatures);
    auto groupRows = std::make_shared<std::vector<SensorRow*>>();
    follow({MonitorField::sensorGroups, MonitorField::temperatures}, [=, this] {
        const auto& groups = model().sensorGroups;
        none->setVisible(groups.empty());
        resizeRows(*groupRows, groups.size(), groupColumn,
                   [groupColumn] { return new SensorRow(groupColumn->parentWidget()); });
        for (std::size_t index = 0; index < groups.size(); ++index) {
            (*groupRows)[index]->set(std::string(groups[index].icon()),
                                     qt(groups[index].title(units.translate)),
                                     qt(Units::temperature(groups[index].celsius, 1, units)),
                                     temperatureHue(groups[index].celsius));
        }
    });

    const PanelBlock battery = addBlock(this, column, context.text("BATTERY"), metrics);
    std::array<SensorRow*, 7> batteryRows{};
    for (SensorRow*& row : batteryRows) {
        row = battery.section->add(new SensorRow(battery.section));
    }
    follow({MonitorField::battery}, [=, this] {
        const std::optional<BatteryInfo>& info = model().battery;
        battery.setShown(info.has_value());
        if (!info) {
            return;
        }
        const auto wholePercent = [&units](double value) {
            return qt(Units::number(std::round(value), 0, units) + "%");
        };
        batteryRows[0]->set("battery.100", context.text("Charge"),
                            wholePercent(info->chargePercent));
        batteryRows[1]->set("heart", context.text("Health"), wholePercent(info->healthPercent));
        batteryRows[2]->set("arrow.triangle.2.circlepath", context.text("Cycles"),
                            qt(Units::number(info->cycleCount, 0, units)));
        batteryRows[3]->set("powerplug", context.text("Status"),
                            context.text(batteryStatusKey(*info)));
        batteryRows[4]->set("bolt", context.text("Voltage"), qt(Units::volts(info->volts, units)));
        // Positive whichever way the current flows.
        batteryRows[5]->set("bolt.horizontal", context.text("Draw"),
                            qt(Units::watts(std::abs(info->volts * info->amps), units)));
        batteryRows[6]->setVisible(info->minutesRemaining.has_value());
        batteryRows[6]->set("clock", context.text("Time Left"),
                            info->minutesRemaining
                                ? qt(Units::duration(*info->minutesRemaining * 60.0, units))
                                : QString());
    });

    const PanelBlock power = addBlock(this, column, context.text("POWER"), metrics);
    QVBoxLayout* powerColumn = rowColumn(power.section);
    auto powerRows = std::make_shared<std::vector<SensorRow*>>();
    follow({MonitorField::power}, [=, this] {
        const auto& readings = model().power;
        power.setShown(!readings.empty());
        resizeRows(*powerRows, readings.size(), powerColumn,
                   [powerColumn] { return new SensorRow(powerColumn->parentWidget()); });
        for (std::size_t index = 0; index < readings.size(); ++index) {
            const PowerReading& reading = readings[index];
            // A processor symbol for the CPU channel, as its temperature group has.
            (*powerRows)[index]->set(std::string(icon(reading.channel)),
                                     qt(reading.title(units.translate)),
                                     qt(Units::watts(reading.watts, units)));
        }
    });

    const PanelBlock fans = addBlock(this, column, context.text("FANS"), metrics);
    QVBoxLayout* fanColumn = rowColumn(fans.section);
    auto fanRows = std::make_shared<std::vector<FanRow*>>();
    const double rpmColumn = FanRow::rpmColumn(font(), units);
    follow({MonitorField::fans}, [=, this] {
        const auto& readings = model().fans;
        fans.setShown(!readings.empty());
        resizeRows(*fanRows, readings.size(), fanColumn, [fanColumn, rpmColumn] {
            return new FanRow(rpmColumn, fanColumn->parentWidget());
        });
        for (std::size_t index = 0; index < readings.size(); ++index) {
            const FanReading& fan = readings[index];
            (*fanRows)[index]->set(
                qt(fillPattern(units.translate("Fan %lld"), {std::to_string(fan.index)})),
                qt(Units::rpm(fan.rpm, units)), qt(fanPercentText(fan, units)));
        }
    });
}

}  // namespace corvane
