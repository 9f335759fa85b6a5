#include "MyLogger.h"

#include <QDebug>

MyLogger::MyLogger(const QString &name)
    : mCategoryName("MoraStore." + name.toUtf8()), mCategory(mCategoryName.constData(), QtDebugMsg) {}

void MyLogger::error(const QString &text) {
    qCCritical(mCategory).noquote() << text;
}
