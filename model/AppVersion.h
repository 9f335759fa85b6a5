#pragma once

#include <QDate>
#include <QStringList>
#include <QVersionNumber>

/// A released version.
struct AppVersion {
    QVersionNumber number; ///< compared part by part as numbers: 0.9 is older than 0.10
    QDate date;            ///< day of the release
    QStringList notes;     ///< what changed, each as Markdown on one line
};
