#include "host/ProgressBar.h"

#include "host/Terminal.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kWidth = 30;
constexpr int kMillisecondsBetween = 100;

} // namespace

ProgressBar::ProgressBar(const QString &step) : mStep(step) {
    static const bool isShown = isTerminal(stderr);
    if (isShown)
        mSinceDrawn.start();
}

ProgressBar::~ProgressBar() {
    if (mShown)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::at(double share) {
    if (!mSinceDrawn.isValid() || mSinceDrawn.elapsed() < kMillisecondsBetween)
        return;
    mSinceDrawn.restart();
    mShown = true;
    const int done = int(kWidth * std::clamp(share, 0.0, 1.0));
    const QString bar = QString(done, QLatin1Char('#')) + QString(kWidth - done, QLatin1Char('.'));
    const QByteArray line = QStringLiteral("\r%1 [%2] %3 %")
                                .arg(mStep, bar, QString::number(int(share * 100)).rightJustified(3))
                                .toUtf8();
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
    std::fflush(stderr);
}
