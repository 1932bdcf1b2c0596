#pragma once

#include <QWidget>

namespace corvane {

/// A hairline across the panel between its blocks. Main thread only.
class PopoverDivider final : public QWidget {
public:
    explicit PopoverDivider(QWidget* parent = nullptr);

    QSize sizeHint() const override { return {0, 1}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace corvane
