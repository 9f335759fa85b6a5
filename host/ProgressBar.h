#pragma once

#include "tools/reports/Progress.h"

#include <QElapsedTimer>
#include <QString>

/// A progress bar for one long step, on stderr and only when that is a terminal.
class ProgressBar {
public:
    explicit ProgressBar(const QString &step);
    /// Clears the bar.
    ~ProgressBar();

    /// Moves the bar. It must outlive what is returned.
    moratools::Progress hearer() {
        return [this](double share) { at(share); };
    }

private:
    Q_DISABLE_COPY(ProgressBar)

    void at(double share);

    QString mStep;
    QElapsedTimer mSinceDrawn;
    bool mShown = false;
};
