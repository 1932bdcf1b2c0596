#pragma once

#include <QString>
#include <QWidget>

namespace corvane {

/// A message in the secondary style that stands in for a section's rows ("no sensors"): it
/// wraps at `wrapWidth`, the width its fixed-width panel gives a row, onto as many lines as it
/// needs instead of being cut short, since a translated message is often longer than a row.
/// The width is given rather than taken from the widget, because the panel is measured before
/// its layout has given the row its width.
class NoteRow final : public QWidget {
public:
    NoteRow(QString text, int wrapWidth, QWidget* parent = nullptr);

    const QString& text() const { return noteText; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString noteText;
    int wrapWidth;
};

}  // namespace corvane
