#pragma once

#include <QString>
#include <QWidget>

#include <vector>

namespace corvane {

/// The CPU history: the user share (cyan) with the system share (red) stacked on it, oldest on
/// the left, drawn from the model's histories on every paint. Main thread only.
class MiniHistoryGraph final : public QWidget {
public:
    MiniHistoryGraph(double height, QWidget* parent = nullptr);
    /// Fractions 0...1, oldest first; repaints only when they changed.
    void setHistories(const std::vector<double>& user, const std::vector<double>& system);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> user;
    std::vector<double> system;
};

/// One thin bar per CPU, in the kernel's CPU order: the fastest cores in cyan, the others in
/// green. Main thread only.
class CoreCompactGraph final : public QWidget {
public:
    CoreCompactGraph(double height, QWidget* parent = nullptr);
    /// `usages` are fractions per CPU; `fast` says per CPU whether it is one of the fastest
    /// (shorter or empty: none is).
    void setCores(const std::vector<double>& usages, const std::vector<bool>& fast);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> usages;
    std::vector<bool> fast;
};

/// The 1, 5 and 15 minute load histories as three lines (cyan, red, gray) over a scale that
/// holds their peak, captioned "Peak … of … cores". Main thread only.
class LoadAverageGraph final : public QWidget {
public:
    LoadAverageGraph(double height, QWidget* parent = nullptr);
    void setHistories(const std::vector<double>& one, const std::vector<double>& five,
                      const std::vector<double>& fifteen, const QString& caption);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> one;
    std::vector<double> five;
    std::vector<double> fifteen;
    QString caption;
};

/// The highest finite value of the three histories; 0 when there is none.
double peakLoad(const std::vector<double>& one, const std::vector<double>& five,
                const std::vector<double>& fifteen);

}  // namespace corvane
