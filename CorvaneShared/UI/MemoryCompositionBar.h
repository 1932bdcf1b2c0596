#pragma once

#include <QWidget>

#include <array>
#include <vector>

namespace corvane {

/// One segment of the composition bar, in points from the bar's left edge.
struct CompositionSegment {
    double start = 0;
    double width = 0;

    friend bool operator==(const CompositionSegment&, const CompositionSegment&) = default;
};

/// Where the wired, active, compressed and available shares fall on a bar `width` wide: side by
/// side from the left, each its share of the sum (of 1 when the sum is 1 or less), none passing
/// the right edge or negative.
std::array<CompositionSegment, 4> compositionSegments(const std::array<double, 4>& shares,
                                                      double width);

/// Memory split into wired (cyan), active (red), compressed (purple) and available (the track
/// colour), one rounded bar 8 points high. Main thread only.
class MemoryCompositionBar final : public QWidget {
public:
    explicit MemoryCompositionBar(QWidget* parent = nullptr);

    /// The four amounts in any one unit; repaints only when they change.
    void setShares(double wired, double active, double compressed, double available);

    QSize sizeHint() const override { return {0, 8}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<double, 4> shares{};
};

}  // namespace corvane
