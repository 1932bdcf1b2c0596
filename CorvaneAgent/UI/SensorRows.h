#pragma once

#include <QFont>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <string>
#include <vector>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/Units.h"

namespace corvane {

/// A sensor reading: its symbol in the accent colour (13 points wide), the title dimmed, and the
/// value in its own colour. Unchanged contents repaint nothing. Main thread only.
class SensorRow final : public QWidget {
public:
    explicit SensorRow(QWidget* parent = nullptr);

    void set(std::string updatedIcon, const QString& updatedTitle, const QString& updatedValue,
             PopoverHue updatedHue = PopoverHue::primary);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string icon;
    QString title;
    QString value;
    PopoverHue valueHue = PopoverHue::primary;
};

/// A fan: the fan symbol, "Fan n", its speed in a column `rpmColumn` wide and, 30 points wide,
/// where the speed stands between the limits (empty without them). Main thread only.
class FanRow final : public QWidget {
public:
    FanRow(double rpmColumn, QWidget* parent = nullptr);

    void set(const QString& updatedTitle, const QString& updatedSpeed,
             const QString& updatedPercent);

    /// The speed column's width for every fan: "9999 RPM" in the panel's 10-point type, rounded
    /// up, plus 2 points, so that four-digit speeds fit and the columns line up.
    static double rpmColumn(const QFont& panelFont, const UnitSources& sources);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double speedWidth;
    QString title;
    QString speed;
    QString percent;
};

/// Keeps `rows` at `count` entries, adding rows made by `make` to `layout` or deleting the last
/// ones, so that rows are rebuilt only when a list's length changes.
template <typename Row, typename Make>
void resizeRows(std::vector<Row*>& rows, std::size_t count, QVBoxLayout* layout, Make make) {
    while (rows.size() > count) {
        delete rows.back();
        rows.pop_back();
    }
    while (rows.size() < count) {
        rows.push_back(make());
        layout->addWidget(rows.back());
    }
}

}  // namespace corvane
