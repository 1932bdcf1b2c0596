#include "CorvaneAgent/UI/PanelSource.h"

#include <QVBoxLayout>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/DenseSection.h"
#include "CorvaneShared/UI/PopoverDivider.h"

namespace corvane {

namespace {

class MonitorPanelSource final : public PanelSource {
public:
    explicit MonitorPanelSource(std::shared_ptr<SystemMonitor> monitor)
        : monitor(std::move(monitor)) {}

    const MonitorFields& fields() const override { return monitor->fields(); }
    Subscription observe(MonitorField field, std::function<void()> onChange) override {
        return monitor->observe(field, std::move(onChange));
    }
    std::string thermalStateLabel() const override { return monitor->thermalStateLabel(); }
    std::vector<CoreTier> coreTiers() const override { return monitor->coreTiers(); }
    std::vector<bool> performanceCores() const override { return monitor->performanceCores(); }
    int totalCores() const override { return monitor->totalCores(); }

private:
    std::shared_ptr<SystemMonitor> monitor;
};

}  // namespace

std::unique_ptr<PanelSource> monitorPanelSource(std::shared_ptr<SystemMonitor> monitor) {
    return std::make_unique<MonitorPanelSource>(std::move(monitor));
}

QLocale PanelContext::locale() const {
    return ByteText::localeFor(Units::displayLocale(units));
}

void DetailPanelBase::follow(std::initializer_list<MonitorField> fields,
                             const std::function<void()>& update) {
    update();
    for (MonitorField field : fields) {
        subscriptions.push_back(source->observe(field, update));
    }
}

}  // namespace corvane

namespace corvane {

void PanelBlock::setShown(bool shown) const {
    if (divider != nullptr) {
        divider->setVisible(shown);
    }
    section->setVisible(shown);
}

PanelBlock addBlock(QWidget* panel, QVBoxLayout* column, std::optional<QString> title,
                    const PanelMetrics& metrics) {
    PanelBlock block;
    if (column->count() > 0) {
        block.divider = new PopoverDivider(panel);
        column->addWidget(block.divider);
    }
    block.section =
        new DenseSection(std::move(title), {metrics.sectionPadding, metrics.rowSpacing}, panel);
    column->addWidget(block.section);
    return block;
}

QVBoxLayout* panelColumn(QWidget* panel) {
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return column;
}

}  // namespace corvane
