#pragma once

#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

#include "CorvaneAgent/UI/PanelSource.h"
#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

/// A utilisation figure: its title, a bar and the percentage in a column 44 points wide; an
/// absent value shows an empty bar and a dash. Main thread only.
class HardwareUtilizationRow final : public QWidget {
public:
    HardwareUtilizationRow(QString title, PopoverHue hue, QWidget* parent = nullptr);
    void setValue(std::optional<double> fraction, const QString& text);
    /// Lines up the bars of rows whose titles differ in length.
    void setTitleWidth(double points);
    /// The width the title needs, in points.
    double titleWidthNeeded() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title;
    PopoverHue hue;
    double titleColumn = 52;
    std::optional<double> fraction;
    QString text;
};

/// One load average under the graph: a swatch in its line's colour, its title and its value.
class LoadAverageItem final : public QWidget {
public:
    LoadAverageItem(QString title, PopoverHue hue, QWidget* parent = nullptr);
    void setValue(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title;
    PopoverHue hue;
    QString value;
};

/// The CPU panel: usage with its history and per-core bars, the busiest processes, the chip's
/// utilisation, core tiers, temperature and power, the GPU, the load averages and the uptime.
/// Follows the model while it lives. Main thread only.
class CPUDetailView final : public QWidget, private DetailPanelBase {
public:
    CPUDetailView(std::unique_ptr<PanelSource> source, PanelContext context,
                  QWidget* parent = nullptr);

private:
    PanelContext context;
};

}  // namespace corvane
