#pragma once

#include <QString>
#include <QWidget>

#include <string>

namespace corvane {

/// The panel's title row, 38 points high: the section's symbol in the accent colour and its
/// title in 12-point semibold. Main thread only.
class CompactHeader final : public QWidget {
public:
    CompactHeader(QString title, std::string icon, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {0, 38}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title;
    std::string icon;
};

}  // namespace corvane
