#pragma once

#include <QWidget>

#include <optional>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

/// A bar 8 points high across the width offered: a rounded track, filled from the left by the
/// value (a fraction; above 1 is full, 0 or less or not a number is empty). Main thread only.
class MetricProgressBar final : public QWidget {
public:
    explicit MetricProgressBar(double value = 0, std::optional<PopoverHue> fill = std::nullopt,
                               QWidget* parent = nullptr);

    /// Repaints only when the drawn width changes.
    void setValue(double value);
    double value() const { return fraction; }

    QSize sizeHint() const override { return {0, 8}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double fraction;
    std::optional<PopoverHue> fill;
};

/// The fraction of the width a value fills: clamped to 0...1, NaN as 0.
double filledFraction(double value);

}  // namespace corvane
