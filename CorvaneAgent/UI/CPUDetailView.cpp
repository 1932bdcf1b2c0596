#include "CorvaneAgent/UI/CPUDetailView.h"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "CorvaneAgent/PanelRules.h"
#include "CorvaneAgent/UI/PanelGraphs.h"
#include "CorvaneAgent/UI/ProcessMetricRow.h"
#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/DenseSection.h"
#include "CorvaneShared/UI/MetricProgressBar.h"
#include "CorvaneShared/UI/PopoverPainting.h"
#include "CorvaneShared/UI/ValueRow.h"

namespace corvane {

namespace {

constexpr double valueColumn = 44;
constexpr double spacing = 6;

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

int rowHeightOf(const QWidget& widget) {
    return PopoverPainting::rowHeight(QFontMetricsF(widget.font()));
}

}  // namespace

HardwareUtilizationRow::HardwareUtilizationRow(QString title, PopoverHue hue, QWidget* parent)
    : QWidget(parent), title(std::move(title)), hue(hue) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void HardwareUtilizationRow::setValue(std::optional<double> updatedFraction,
                                      const QString& updatedText) {
    const auto drawn = [](std::optional<double> value) {
        return value ? std::optional<double>(filledFraction(*value)) : std::nullopt;
    };
    if (drawn(updatedFraction) == drawn(fraction) && updatedText == text) {
        return;
    }
    fraction = updatedFraction;
    text = updatedText;
    update();
}

void HardwareUtilizationRow::setTitleWidth(double points) {
    titleColumn = points;
    update();
}

double HardwareUtilizationRow::titleWidthNeeded() const {
    // Measured in the panel's type even before the row is placed in the panel.
    return std::ceil(QFontMetricsF(popoverFont(font(), 10)).horizontalAdvance(title));
}

QSize HardwareUtilizationRow::sizeHint() const {
    return {0, rowHeightOf(*this)};
}

void HardwareUtilizationRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    PopoverPainting::drawText(painter, QRectF(0, 0, titleColumn, height()), title, Qt::AlignLeft,
                              Qt::ElideRight, colors.secondaryText);
    const double barLeft = titleColumn + spacing;
    const double barWidth = std::max(0.0, width() - barLeft - spacing - valueColumn);
    const QRectF track(barLeft, (height() - 6) / 2.0, barWidth, 6);
    QPainterPath trackPath;
    trackPath.addRoundedRect(track, 2, 2);
    painter.fillPath(trackPath, colors.track);
    if (fraction && filledFraction(*fraction) > 0) {
        QPainterPath fill;
        fill.addRoundedRect(
            QRectF(track.topLeft(), QSizeF(barWidth * filledFraction(*fraction), 6)), 2, 2);
        painter.fillPath(fill, colorOf(colors, hue));
    }
    PopoverPainting::drawText(painter, QRectF(width() - valueColumn, 0, valueColumn, height()),
                              text, Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
}

LoadAverageItem::LoadAverageItem(QString title, PopoverHue hue, QWidget* parent)
    : QWidget(parent), title(std::move(title)), hue(hue) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void LoadAverageItem::setValue(const QString& text) {
    if (text != value) {
        value = text;
        update();
    }
}

QSize LoadAverageItem::sizeHint() const {
    return {0, rowHeightOf(*this)};
}

void LoadAverageItem::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    QPainterPath swatch;
    swatch.addRoundedRect(QRectF(0, (height() - 7) / 2.0, 7, 7), 1, 1);
    painter.fillPath(swatch, colorOf(colors, hue));
    const QFontMetricsF metrics(font());
    const double titleWidth = std::min(metrics.horizontalAdvance(title) + 1, width() / 2.0);
    PopoverPainting::drawText(painter, QRectF(11, 0, titleWidth, height()), title, Qt::AlignLeft,
                              Qt::ElideRight, colors.secondaryText);
    const double valueLeft = 11 + titleWidth + 4;
    PopoverPainting::drawText(painter, QRectF(valueLeft, 0, width() - valueLeft, height()), value,
                              Qt::AlignLeft, Qt::ElideRight, colors.primaryText);
}

CPUDetailView::CPUDetailView(std::unique_ptr<PanelSource> panelSource, PanelContext panelContext,
                             QWidget* parent)
    : QWidget(parent), DetailPanelBase(std::move(panelSource)), context(std::move(panelContext)) {
    const PanelMetrics& metrics = context.metrics;
    const UnitSources& units = context.units;
    QVBoxLayout* column = panelColumn(this);
    const auto percent = [&units](double fraction) { return qt(Units::percent(fraction, units)); };
    const QString unavailable = context.text("Unavailable");

    // Usage: the history, the cores, and the split of the last sample.
    DenseSection* usage = addBlock(this, column, context.text("USAGE"), metrics).section;
    auto* history = usage->add(new MiniHistoryGraph(metrics.usageGraphHeight, usage));
    auto* cores = usage->add(new CoreCompactGraph(metrics.usageGraphHeight / 3, usage));
    auto* user = usage->add(new ValueRow(context.text("User"), {}, PopoverHue::cyan, usage));
    auto* system = usage->add(new ValueRow(context.text("System"), {}, PopoverHue::red, usage));
    auto* idle = usage->add(new ValueRow(context.text("Idle"), {}, PopoverHue::gray, usage));
    follow({MonitorField::userCPUHistory, MonitorField::systemCPUHistory}, [this, history] {
        history->setHistories(model().userCPUHistory, model().systemCPUHistory);
    });
    follow({MonitorField::coreUsages},
           [this, cores] { cores->setCores(model().coreUsages, source->performanceCores()); });
    follow({MonitorField::userCPUUsage, MonitorField::systemCPUUsage}, [=, this] {
        const WholeShares shares = wholeShares(model().userCPUUsage, model().systemCPUUsage);
        user->setValue(percent(shares.user / 100.0));
        system->setValue(percent(shares.system / 100.0));
        idle->setValue(percent(shares.idle / 100.0));
    });

    DenseSection* processes = addBlock(this, column, context.text("PROCESSES"), metrics).section;
    auto* topCPU = processes->add(new ProcessList(
        context.processIcon,
        [percent](const ProcessMetric& process) {
            return std::vector<QString>{percent(process.cpu / 100)};
        },
        static_cast<int>(metrics.rowSpacing), processes));
    follow({MonitorField::topCPUProcesses},
           [this, topCPU] { topCPU->setProcesses(model().topCPUProcesses); });

    // The chip: its name in capitals as the title.
    DenseSection* chip = addBlock(this, column, QString(), metrics).section;
    auto* cpuRow =
        chip->add(new HardwareUtilizationRow(context.text("CPU"), PopoverHue::cyan, chip));
    auto* gpuRow =
        chip->add(new HardwareUtilizationRow(context.text("GPU"), PopoverHue::purple, chip));
    auto* memoryRow =
        chip->add(new HardwareUtilizationRow(context.text("Memory"), PopoverHue::green, chip));
    // The bars start together after the longest title, which may take at most a third.
    const double titleWidth =
        std::clamp(std::max({cpuRow->titleWidthNeeded(), gpuRow->titleWidthNeeded(),
                             memoryRow->titleWidthNeeded()}) +
                       4,
                   40.0, 92.0);
    for (HardwareUtilizationRow* row : {cpuRow, gpuRow, memoryRow}) {
        row->setTitleWidth(titleWidth);
    }
    follow({MonitorField::chipName},
           [this, chip] { chip->setTitle(QString::fromUtf8(model().chipName.c_str()).toUpper()); });
    follow({MonitorField::cpuUsage},
           [=, this] { cpuRow->setValue(model().cpuUsage, percent(model().cpuUsage)); });
    follow({MonitorField::gpuUsage}, [=, this] {
        const std::optional<double> gpu = model().gpuUsage;
        gpuRow->setValue(gpu, gpu ? percent(*gpu) : QStringLiteral("–"));
    });
    follow({MonitorField::usedMemory, MonitorField::totalMemory},
           [=, this] { memoryRow->setValue(memoryUsage(model()), percent(memoryUsage(model()))); });

    DenseSection* cpu = addBlock(this, column, context.text("CPU"), metrics).section;
    auto* coreTiers = cpu->add(new ValueRow(context.text("Cores"), {}, std::nullopt, cpu));
    auto* cpuTemperature =
        cpu->add(new ValueRow(context.text("Temperature"), {}, std::nullopt, cpu));
    auto* cpuPower = cpu->add(new ValueRow(context.text("Power"), {}, std::nullopt, cpu));
    coreTiers->setValue(qt(coresText(source->coreTiers(), source->totalCores())));
    follow({MonitorField::cpuTemperature}, [=, this] {
        const std::optional<double> celsius = model().cpuTemperature;
        cpuTemperature->setVisible(celsius.has_value());
        cpuTemperature->setValue(celsius ? qt(Units::temperature(*celsius, 1, units)) : QString());
    });
    follow({MonitorField::power}, [=, this] {
        const std::optional<double> watts = cpuWatts(model());
        cpuPower->setVisible(watts.has_value());
        cpuPower->setValue(watts ? qt(Units::watts(*watts, units)) : QString());
    });

    DenseSection* gpu = addBlock(this, column, context.text("GPU"), metrics).section;
    auto* device = gpu->add(new ValueRow(context.text("Device"), {}, std::nullopt, gpu));
    auto* renderer = gpu->add(new ValueRow(context.text("Renderer"), {}, std::nullopt, gpu));
    auto* tiler = gpu->add(new ValueRow(context.text("Tiler"), {}, std::nullopt, gpu));
    auto* gpuMemory = gpu->add(new ValueRow(context.text("Memory in use"), {}, std::nullopt, gpu));
    auto* gpuTemperature =
        gpu->add(new ValueRow(context.text("Temperature"), {}, std::nullopt, gpu));
    auto* gpuPower = gpu->add(new ValueRow(context.text("Power"), {}, std::nullopt, gpu));
    const auto percentOrUnavailable = [percent, unavailable](std::optional<double> value) {
        return value ? percent(*value) : unavailable;
    };
    follow({MonitorField::gpuUsage, MonitorField::gpuRendererUsage, MonitorField::gpuTilerUsage},
           [=, this] {
               device->setValue(percentOrUnavailable(model().gpuUsage));
               renderer->setValue(percentOrUnavailable(model().gpuRendererUsage));
               tiler->setValue(percentOrUnavailable(model().gpuTilerUsage));
           });
    follow({MonitorField::gpuInUseMemory}, [=, this] {
        const std::optional<std::uint64_t> bytes = model().gpuInUseMemory;
        gpuMemory->setVisible(bytes.has_value());
        gpuMemory->setBytes(bytes.value_or(0), context.locale());
    });
    follow({MonitorField::gpuTemperature}, [=, this] {
        const std::optional<double> celsius = model().gpuTemperature;
        gpuTemperature->setVisible(celsius.has_value());
        gpuTemperature->setValue(celsius ? qt(Units::temperature(*celsius, 1, units)) : QString());
    });
    follow({MonitorField::power}, [=, this] {
        const auto& readings = model().power;
        const auto found = std::find_if(
            readings.begin(), readings.end(),
            [](const PowerReading& reading) { return reading.channel == PowerChannel::gpu; });
        gpuPower->setValue(found != readings.end() ? qt(Units::watts(found->watts, units))
                                                   : unavailable);
    });

    DenseSection* load = addBlock(this, column, context.text("LOAD AVERAGE"), metrics).section;
    auto* loadGraph = load->add(new LoadAverageGraph(metrics.loadGraphHeight, load));
    auto* items = new QWidget(load);
    auto* itemRow = new QHBoxLayout(items);
    itemRow->setContentsMargins(0, 0, 0, 0);
    itemRow->setSpacing(6);
    const std::array<LoadAverageItem*, 3> loadItems = {
        new LoadAverageItem(context.text("1 min"), PopoverHue::cyan, items),
        new LoadAverageItem(context.text("5 min"), PopoverHue::red, items),
        new LoadAverageItem(context.text("15 min"), PopoverHue::gray, items)};
    for (LoadAverageItem* item : loadItems) {
        itemRow->addWidget(item, 1);
    }
    load->addRow(items);
    follow({MonitorField::loadAverages}, [=, this] {
        for (std::size_t index = 0; index < loadItems.size(); ++index) {
            loadItems[index]->setValue(qt(Units::number(model().loadAverages[index], 2, units)));
        }
    });
    follow({MonitorField::loadOneHistory, MonitorField::loadFiveHistory,
            MonitorField::loadFifteenHistory, MonitorField::coreUsages},
           [=, this] {
               const double peak = peakLoad(model().loadOneHistory, model().loadFiveHistory,
                                            model().loadFifteenHistory);
               const std::string caption = fillPattern(
                   units.translate("Peak %@ of %@ cores"),
                   {Units::number(peak, 2, units), Units::number(source->totalCores(), 0, units)});
               loadGraph->setHistories(model().loadOneHistory, model().loadFiveHistory,
                                       model().loadFifteenHistory, qt(caption));
           });

    DenseSection* uptime = addBlock(this, column, std::nullopt, metrics).section;
    auto* uptimeRow = uptime->add(new ValueRow(context.text("Uptime"), {}, std::nullopt, uptime));
    follow({MonitorField::uptime},
           [=, this] { uptimeRow->setValue(qt(Units::duration(model().uptime, units))); });
}

}  // namespace corvane
