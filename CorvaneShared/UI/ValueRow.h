#pragma once

#include <QLocale>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <optional>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

/// A panel row: an optional colour swatch, the title dimmed, and the value right-aligned with
/// its digits in columns. The title gives way (elided) to the value, so the row never widens
/// the panel. Setting what is already shown repaints nothing. Main thread only.
class ValueRow final : public QWidget {
public:
    ValueRow(QString title, QString value, std::optional<PopoverHue> swatch = std::nullopt,
             QWidget* parent = nullptr);
    /// The byte form: `bytes` as a memory-style count in `locale`.
    ValueRow(QString title, std::uint64_t bytes, const QLocale& locale,
             std::optional<PopoverHue> swatch = std::nullopt, QWidget* parent = nullptr);

    void setTitle(const QString& text);
    void setValue(const QString& text);
    /// Shows `bytes` as a memory-style count in `locale`.
    void setBytes(std::uint64_t bytes, const QLocale& locale);
    const QString& title() const { return titleText; }
    const QString& value() const { return valueText; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString titleText;
    QString valueText;
    std::optional<PopoverHue> swatch;
};

}  // namespace corvane
