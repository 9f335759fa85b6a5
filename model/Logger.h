#pragma once

#include <QString>

/// An event of the usage log: what the host or one of its plug-ins did with the store.
struct Logger {
    long logID = 0;          ///< given by the log
    QString appVersionName;  ///< version of the host, "0.1.0"
    QString appVersionDate;  ///< date of that version
    QString operation;       ///< what was done
    QString operDate;        ///< local time, yyyyMMddhhmmss
    QString userName;        ///< login name of who did it
    QString hostName;        ///< name of the machine
    QString pluginName;      ///< empty for an event of the host
    QString pluginVersion;   ///< version of the plug-in
    QString pluginOperation; ///< what the plug-in did
    QString remark;          ///< what else helps to understand the event
};
