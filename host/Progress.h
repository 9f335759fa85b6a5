#pragma once

#include <QElapsedTimer>
#include <QString>

/// A progress bar for one long step, on stderr and only when that is a terminal.
class Progress {
public:
    explicit Progress(const QString &step);
    /// Clears the bar.
    ~Progress();

    /// `share` of the step is done, 0 to 1. Cheap enough to be called for every object.
    void at(double share);

private:
    Q_DISABLE_COPY(Progress)

    QString mStep;
    QElapsedTimer mSinceDrawn;
    bool mShown = false;
};
