#pragma once

#include "MoraInterfacesExport.h"

#include <QList>
#include <QPair>
#include <QString>

/// Tables of its own that a plug-in wants in every store.
class MORAINTERFACES_EXPORT ITableProvider {
public:
    virtual ~ITableProvider();

    /// Pairs of table name and CREATE statement, in the order in which the tables are to be made.
    virtual QList<QPair<QString, QString>> tables() const = 0;
};

/// The host's plug-in.
class MORAINTERFACES_EXPORT IMoraPlugin {
public:
    virtual ~IMoraPlugin();

    /// The provider of the plug-in's tables, or null when it has none; the plug-in keeps owning it.
    virtual ITableProvider *tableProvider() const = 0;
};

/// The host's plug-in object. Null until the host sets it; the host keeps owning it.
extern MORAINTERFACES_EXPORT IMoraPlugin *gpMoraPlugin;
