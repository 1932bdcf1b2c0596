#include "CorvaneAgent/UI/MemoryDetailView.h"

#include "CorvaneAgent/PanelRules.h"
#include "CorvaneAgent/UI/ProcessMetricRow.h"
#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/DenseSection.h"
#include "CorvaneShared/UI/MemoryCompositionBar.h"
#include "CorvaneShared/UI/MetricProgressBar.h"
#include "CorvaneShared/UI/ValueRow.h"

namespace corvane {

namespace {

std::string_view pressureKey(MemoryPressureLevel level) {
    switch (level) {
        case MemoryPressureLevel::warning: return "Warning";
        case MemoryPressureLevel::critical: return "Critical";
        case MemoryPressureLevel::normal: break;
    }
    return "Normal";
}

}  // namespace

MemoryDetailView::MemoryDetailView(std::unique_ptr<PanelSource> panelSource,
                                   PanelContext panelContext, QWidget* parent)
    : QWidget(parent), DetailPanelBase(std::move(panelSource)), context(std::move(panelContext)) {
    const PanelMetrics& metrics = context.metrics;
    const QLocale locale = context.locale();
    QVBoxLayout* column = panelColumn(this);
    const auto bytes = [locale](std::uint64_t count) {
        return ByteText::format(count, ByteText::Style::memory, locale);
    };

    DenseSection* pressure = addBlock(this, column, context.text("PRESSURE"), metrics).section;
    auto* pressureBar = pressure->add(new MetricProgressBar(0, std::nullopt, pressure));
    auto* level = pressure->add(new ValueRow(context.text("Pressure"), {}));
    auto* used = pressure->add(new ValueRow(context.text("Memory Used"), {}));
    auto* app = pressure->add(new ValueRow(context.text("App Memory"), {}));
    auto* wired = pressure->add(new ValueRow(context.text("Wired"), {}));
    auto* compressed = pressure->add(new ValueRow(context.text("Compressed"), {}));
    auto* cache = pressure->add(new ValueRow(context.text("Cache"), {}));

    DenseSection* memory = addBlock(this, column, context.text("MEMORY"), metrics).section;
    auto* composition = memory->add(new MemoryCompositionBar(memory));
    auto* wiredShare = memory->add(new ValueRow(context.text("Wired"), {}, PopoverHue::cyan));
    auto* activeShare = memory->add(new ValueRow(context.text("Active"), {}, PopoverHue::red));
    auto* compressedShare =
        memory->add(new ValueRow(context.text("Compressed"), {}, PopoverHue::purple));
    auto* availableShare =
        memory->add(new ValueRow(context.text("Available"), {}, PopoverHue::track));

    follow({MonitorField::usedMemory, MonitorField::totalMemory, MonitorField::wiredMemory,
            MonitorField::compressedMemory, MonitorField::activeMemory, MonitorField::cacheMemory,
            MonitorField::memoryPressureLevel},
           [=, this] {
               const MonitorFields& fields = model();
               pressureBar->setValue(memoryPressure(fields));
               level->setValue(context.text(pressureKey(fields.memoryPressureLevel)));
               used->setValue(
                   QString::fromStdString(Units::percent(memoryUsage(fields), context.units)));
               app->setValue(bytes(fields.activeMemory));
               wired->setValue(bytes(fields.wiredMemory));
               compressed->setValue(bytes(fields.compressedMemory));
               cache->setValue(bytes(fields.cacheMemory));
               const std::uint64_t available =
                   availableMemory(fields.totalMemory, fields.usedMemory);
               const auto total = static_cast<double>(fields.totalMemory);
               composition->setShares(
                   shareOf(fields.wiredMemory, total), shareOf(fields.activeMemory, total),
                   shareOf(fields.compressedMemory, total), shareOf(available, total));
               wiredShare->setValue(bytes(fields.wiredMemory));
               activeShare->setValue(bytes(fields.activeMemory));
               compressedShare->setValue(bytes(fields.compressedMemory));
               availableShare->setValue(bytes(available));
           });

    DenseSection* processes = addBlock(this, column, context.text("PROCESSES"), metrics).section;
    auto* topMemory = processes->add(new ProcessList(
        context.processIcon,
        [bytes](const ProcessMetric& process) {
            return std::vector<QString>{bytes(process.memory)};
        },
        static_cast<int>(metrics.rowSpacing), processes));
    follow({MonitorField::topMemoryProcesses},
           [this, topMemory] { topMemory->setProcesses(model().topMemoryProcesses); });

    DenseSection* swap = addBlock(this, column, context.text("SWAP MEMORY"), metrics).section;
    auto* swapBar = swap->add(new MetricProgressBar(0, std::nullopt, swap));
    auto* swapUsed = swap->add(new ValueRow(context.text("Used"), {}));
    follow({MonitorField::swapUsed, MonitorField::swapTotal}, [=, this] {
        const MonitorFields& fields = model();
        swapBar->setValue(
            shareOf(static_cast<double>(fields.swapUsed), static_cast<double>(fields.swapTotal)));
        swapUsed->setValue(QString::fromStdString(fillPattern(
            context.units.translate("%@ of %@"),
            {bytes(fields.swapUsed).toStdString(), bytes(fields.swapTotal).toStdString()})));
    });

    DenseSection* pages = addBlock(this, column, context.text("PAGES"), metrics).section;
    auto* pageIns = pages->add(new ValueRow(context.text("Page Ins"), {}));
    auto* pageOuts = pages->add(new ValueRow(context.text("Page Outs"), {}));
    follow({MonitorField::pageInsPerSecond, MonitorField::pageOutsPerSecond}, [=, this] {
        pageIns->setValue(ByteText::rate(model().pageInsPerSecond, locale));
        pageOuts->setValue(ByteText::rate(model().pageOutsPerSecond, locale));
    });
}

}  // namespace corvane
