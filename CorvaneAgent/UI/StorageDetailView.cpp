#include "CorvaneAgent/UI/StorageDetailView.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "CorvaneAgent/PanelRules.h"
#include "CorvaneAgent/UI/ProcessMetricRow.h"
#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/DenseSection.h"
#include "CorvaneShared/UI/MetricProgressBar.h"
#include "CorvaneShared/UI/PopoverPainting.h"
#include "CorvaneShared/UI/ValueRow.h"

namespace corvane {

namespace {

// The drive symbol at 22 points beside the volume's name and, dimmed, its free space.
class VolumeRow final : public QWidget {
public:
    explicit VolumeRow(QWidget* parent) : QWidget(parent) {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }
    void set(const QString& updatedName, const QString& updatedFree) {
        if (updatedName != name || updatedFree != freeSpace) {
            name = updatedName;
            freeSpace = updatedFree;
            update();
        }
    }
    QSize sizeHint() const override {
        return {0, std::max(26, 2 * PopoverPainting::rowHeight(QFontMetricsF(font())))};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const PopoverColors& colors = colorsOf(*this);
        PopoverPainting::drawSymbol(painter, "internaldrive",
                                    QRectF(0, (height() - 22) / 2.0, 22, 22), colors.secondaryText);
        const double left = 30;
        const double half = height() / 2.0;
        QFont medium = font();
        medium.setWeight(QFont::Medium);
        painter.setFont(medium);
        PopoverPainting::drawText(painter, QRectF(left, 0, width() - left, half), name,
                                  Qt::AlignLeft, Qt::ElideMiddle, colors.primaryText);
        painter.setFont(font());
        PopoverPainting::drawText(painter, QRectF(left, half, width() - left, half), freeSpace,
                                  Qt::AlignLeft, Qt::ElideRight, colors.secondaryText);
    }

private:
    QString name;
    QString freeSpace;
};

std::uint64_t nonNegative(std::int64_t bytes) {
    return bytes > 0 ? static_cast<std::uint64_t>(bytes) : 0;
}

}  // namespace

StorageDetailView::StorageDetailView(std::unique_ptr<PanelSource> panelSource,
                                     PanelContext panelContext, QWidget* parent)
    : QWidget(parent), DetailPanelBase(std::move(panelSource)), context(std::move(panelContext)) {
    const PanelMetrics& metrics = context.metrics;
    const QLocale locale = context.locale();
    QVBoxLayout* column = panelColumn(this);
    const auto fileBytes = [locale](std::uint64_t count) {
        return ByteText::format(count, ByteText::Style::file, locale);
    };

    DenseSection* disk = addBlock(this, column, context.text("DISK"), metrics).section;
    auto* volume = disk->add(new VolumeRow(disk));
    auto* fill = disk->add(new MetricProgressBar(0, std::nullopt, disk));
    auto* used = disk->add(new ValueRow(context.text("Used"), {}));
    auto* capacity = disk->add(new ValueRow(context.text("Capacity"), {}));
    auto* read = disk->add(new ValueRow(context.text("Read"), {}));
    auto* write = disk->add(new ValueRow(context.text("Write"), {}));
    follow({MonitorField::volumeName, MonitorField::availableStorage, MonitorField::totalStorage},
           [=, this] {
               const MonitorFields& fields = model();
               volume->set(processName(fields.volumeName),
                           QString::fromStdString(fillPattern(
                               context.units.translate("%@ free"),
                               {fileBytes(nonNegative(fields.availableStorage)).toStdString()})));
               fill->setValue(storageUsage(fields));
               used->setValue(fileBytes(
                   nonNegative(usedStorage(fields.totalStorage, fields.availableStorage))));
               capacity->setValue(fileBytes(nonNegative(fields.totalStorage)));
           });
    follow({MonitorField::diskReadPerSecond, MonitorField::diskWritePerSecond}, [=, this] {
        read->setValue(ByteText::rate(model().diskReadPerSecond, locale));
        write->setValue(ByteText::rate(model().diskWritePerSecond, locale));
    });

    DenseSection* processes = addBlock(this, column, context.text("PROCESSES"), metrics).section;
    auto* topDisk = processes->add(new ProcessList(
        context.processIcon,
        [locale](const ProcessMetric& process) {
            return std::vector<QString>{ByteText::rate(process.diskRead, locale),
                                        ByteText::rate(process.diskWrite, locale)};
        },
        static_cast<int>(metrics.rowSpacing), processes));
    follow({MonitorField::topDiskProcesses},
           [this, topDisk] { topDisk->setProcesses(model().topDiskProcesses); });
}

}  // namespace corvane
