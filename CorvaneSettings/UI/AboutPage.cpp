#include "CorvaneSettings/UI/AboutPage.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace corvane {

QWidget* makeAboutPage(const AboutFacts& facts, const TextLookup& translate) {
    const auto text = [&translate](std::string_view key) {
        return QString::fromStdString(translate(key));
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* name = new QLabel("Corvane");
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    name->setFont(large);
    layout->addWidget(name);
    auto* summary = new QLabel(text("A system monitor for the menu bar."));
    summary->setWordWrap(true);
    layout->addWidget(summary);

    auto* form = new QFormLayout;
    const auto selectable = [](const QString& content) {
        auto* label = new QLabel(content);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setWordWrap(true);
        return label;
    };
    form->addRow(text("Version"), selectable(facts.version));
    form->addRow(text("Build"), selectable(facts.build));
    auto* file = selectable(facts.settingsFile);
    file->setObjectName("settingsFile");
    form->addRow(text("Settings file"), file);
    for (const auto& [title, url] : facts.documentation) {
        auto* link = new QLabel(
            QString("<a href=\"%1\">%2</a>").arg(url.toHtmlEscaped(), text(title).toHtmlEscaped()));
        link->setOpenExternalLinks(true);
        form->addRow(facts.documentation.front().first == title ? text("Documentation") : QString(),
                     link);
    }
    layout->addLayout(form);
    layout->addStretch();
    return page;
}

}  // namespace corvane
