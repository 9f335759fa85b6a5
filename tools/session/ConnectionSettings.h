#pragma once

#include "model/StoreSettings.h"
#include "tools/session/StoreAddress.h"

#include <QSqlDatabase>

namespace moratools {

/// The settings of Qt's driver for a store. What the driver has no setting for (service file, encryption,
/// ...) stands in libpq's environment variables for the life of this object, so that it counts for the
/// connections that are opened meanwhile.
class ConnectionSettings {
public:
    /// Throws `Failure` for a keyword that neither the driver nor the environment knows.
    explicit ConnectionSettings(const StoreAddress &address);
    ~ConnectionSettings();

    QString driver() const;
    /// For a connection of the host's own.
    void applyTo(QSqlDatabase &db) const;
    /// For a connection of the library's.
    StoreSettings ofLibrary() const;

private:
    Q_DISABLE_COPY(ConnectionSettings)

    struct Variable {
        QByteArray name;
        bool wasSet;
        QByteArray before;
    };

    void set(const QByteArray &variable, const QByteArray &value);

    StoreAddress mAddress;
    int mPort = -1; ///< what libpq finds elsewhere
    QList<Variable> mVariables;
};

} // namespace moratools
