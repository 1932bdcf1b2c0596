#pragma once

#include <QString>
#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace corvane {

struct PanelSpacing {
    /// Above and below the section's content.
    double sectionPadding = 9;
    /// Between its rows.
    double rowSpacing = 7;
};

/// A block of a panel: an optional centred title in the accent colour, then its rows, with 12
/// points at the sides and the panel's section padding above and below. Main thread only.
class DenseSection final : public QWidget {
public:
    DenseSection(std::optional<QString> title, PanelSpacing spacing, QWidget* parent = nullptr);

    /// The space left and right of every row.
    static constexpr int horizontalMargin = 12;

    /// Appends `row` (the section takes it over) and returns it.
    template <typename Row>
    Row* add(Row* row) {
        addRow(row);
        return row;
    }
    void addRow(QWidget* row);
    /// Changes the title (a section titled after a value, such as the processor's name).
    void setTitle(const QString& text);
    QVBoxLayout* rows() const { return layout; }

private:
    class Title;
    Title* title = nullptr;
    QVBoxLayout* layout;
};

}  // namespace corvane
