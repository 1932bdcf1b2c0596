#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>

#include <vector>

#include "CorvaneAgent/UI/PanelSource.h"

class QVBoxLayout;

namespace corvane {

/// A process in a top list: its icon (14 by 14), its name shortened in the middle when too
/// long, and one value, or two value columns 62 points wide each (read and write rates) that
/// line up from row to row. Unchanged contents repaint nothing. Main thread only.
class ProcessMetricRow final : public QWidget {
public:
    static constexpr double columnWidth = 62;

    ProcessMetricRow(ProcessIconLookup iconLookup, QWidget* parent = nullptr);

    /// Shows `process` with `shown` values (one, or two for the columns).
    void setProcess(const ProcessMetric& process, std::vector<QString> shown);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ProcessIconLookup iconLookup;
    std::int32_t pid = 0;
    bool hasProcess = false;
    QString name;
    std::vector<QString> values;
    QIcon icon;
};

/// The rows of a top list, kept in step with the list: rows are added or removed only when its
/// length changes. Main thread only.
class ProcessList final : public QWidget {
public:
    using Values = std::function<std::vector<QString>(const ProcessMetric&)>;

    ProcessList(ProcessIconLookup iconLookup, Values values, int rowSpacing,
                QWidget* parent = nullptr);
    void setProcesses(const std::vector<ProcessMetric>& processes);

private:
    ProcessIconLookup iconLookup;
    Values values;
    QVBoxLayout* layout;
    std::vector<ProcessMetricRow*> rows;
};

/// The process's name as text; bytes that are not UTF-8 show as replacement characters.
QString processName(const std::string& name);

}  // namespace corvane
