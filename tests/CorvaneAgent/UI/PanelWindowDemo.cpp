// Shows a panel window below a stand-in menu-bar item, over an ordinary window, until it is
// closed: what panel-window-x11.sh inspects under a real window manager.
#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QStringList>
#include <QVBoxLayout>

#include <cstdio>

#include "CorvaneAgent/UI/PanelWindow.h"

namespace {

QWidget* colouredBox(const QString& text, const QColor& colour, QWidget* parent = nullptr) {
    auto* box = new QLabel(text, parent);
    box->setAlignment(Qt::AlignCenter);
    box->setAutoFillBackground(true);
    QPalette palette = box->palette();
    palette.setColor(QPalette::Window, colour);
    box->setPalette(palette);
    return box;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList anchorText = application.arguments().value(1, "600,0,40,24").split(',');
    if (anchorText.size() != 4) {
        std::fprintf(stderr, "usage: %s x,y,width,height\n", argv[0]);
        return 2;
    }
    const corvane::ScreenRect anchor{anchorText[0].toDouble(), anchorText[1].toDouble(),
                                     anchorText[2].toDouble(), anchorText[3].toDouble()};

    QWidget other;
    other.setWindowTitle("Other window");
    // Overlapping the panel, so that a picture shows which of the two is on top.
    other.setGeometry(500, 80, 700, 500);
    (new QVBoxLayout(&other))->addWidget(colouredBox("an ordinary window", QColor(90, 90, 100)));
    other.show();

    QWidget* item = colouredBox("item", QColor(240, 150, 20));
    item->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    item->setWindowTitle("Stand-in item");
    item->setGeometry(static_cast<int>(anchor.x), static_cast<int>(anchor.y),
                      static_cast<int>(anchor.width), static_cast<int>(anchor.height));
    item->show();

    corvane::PanelWindow panel("Sensors", [](const corvane::PanelMetrics&, std::optional<double>) {
        QWidget* content = colouredBox("Sensors panel", QColor(30, 110, 200));
        content->setFixedHeight(420);
        return content;
    });
    panel.setContent(corvane::PanelMetrics::steps[0], std::nullopt);
    const corvane::Subscription quitOnClose =
        panel.observeDidClose([] { QCoreApplication::quit(); });
    panel.show(anchor);
    return application.exec();
}
