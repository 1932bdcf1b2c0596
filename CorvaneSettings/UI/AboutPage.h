#pragma once

#include <QString>
#include <QWidget>

#include <vector>

#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// What the user may want to quote: version, build, where the settings live, and where the
/// documentation is.
struct AboutFacts {
    QString version;
    QString build;
    QString settingsFile;
    /// Titles (English keys) and URLs of the documentation; none when it is not installed.
    std::vector<std::pair<std::string, QString>> documentation;
};

/// The About page; nothing on it changes while the window is open.
QWidget* makeAboutPage(const AboutFacts& facts, const TextLookup& translate);

}  // namespace corvane
