#pragma once

#include "store/DBTools.h"

#include <MoraInterfaces/MoraInterfaces.h>

/// A host with settings and plug-in tables, in place for the life of the object.
class Host : public IMoraInterface, public IMoraPlugin, public ITableProvider {
public:
    Host() {
        gpMoraInterface = this;
        gpMoraPlugin = this;
    }
    ~Host() override {
        gpMoraInterface = nullptr;
        gpMoraPlugin = nullptr;
        DBTools::mDbDriver = QStringLiteral("QSQLITE");
    }
    QJsonObject jsonSettings() const override { return settings; }
    ITableProvider *tableProvider() const override { return const_cast<Host *>(this); }
    QList<QPair<QString, QString>> tables() const override { return pluginTables; }

    QJsonObject settings;
    QList<QPair<QString, QString>> pluginTables;
};
