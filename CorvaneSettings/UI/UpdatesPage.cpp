#include "CorvaneSettings/UI/UpdatesPage.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvane {

UpdatesPage::UpdatesPage(SettingsModel& model, TextLookup translate, QString runningVersion,
                         QWidget* parent)
    : SettingsPage(model, std::move(translate), parent) {
    auto* layout = new QVBoxLayout(this);
    automatic = new QCheckBox(text("Check for updates automatically"));
    automatic->setObjectName("updatesCheckAutomatically");
    connect(automatic, &QCheckBox::toggled, this,
            [this](bool on) { this->model.setChecksAutomatically(on); });
    layout->addWidget(automatic);

    checkNow = new QPushButton(text("Check Now"));
    checkNow->setObjectName("checkNow");
    checkNow->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(checkNow, &QPushButton::clicked, this, [this] { this->model.checkForUpdates(); });
    layout->addWidget(checkNow);
    unavailable = new QLabel(text("Corvane checks for updates while it runs from its bundle."));
    unavailable->setEnabled(false);
    layout->addWidget(unavailable);
    layout->addSpacing(8);

    auto* form = new QFormLayout;
    offer = new QLabel;
    offer->setObjectName("offer");
    form->addRow(text("Available"), offer);
    auto* running = new QLabel(runningVersion);
    running->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(text("This version"), running);
    layout->addLayout(form);
    layout->addStretch();
    refresh();
}

void UpdatesPage::refresh() {
    {
        const QSignalBlocker quiet(automatic);
        automatic->setChecked(model.checksAutomatically());
    }
    checkNow->setEnabled(model.updaterCanCheck());
    unavailable->setVisible(!model.updaterCanCheck());
    const auto offered = model.offeredUpdate();
    offer->setText(offered ? text("Corvane %1").arg(QString::fromStdString(*offered))
                           : text("No update offered"));
}

}  // namespace corvane
