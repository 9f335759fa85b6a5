#pragma once

#include "MoraStoreExport.h"

#include <QList>
#include <QString>

#include <memory>

/// A class of roads.
struct LinkType {
    long linkTypeID = 0;
    QString typeName;           ///< display word
    double trafficCapacity = 0; ///< vehicles per hour
    double trafficSpeed = 0;    ///< km/h
    double limitSpeed = 0;      ///< km/h
    double minSpeed = 0;        ///< km/h
    /// The name as a whole load found it, where the displayed one would be written otherwise.
    QString storedTypeName = {};

    /// A copy that the caller owns.
    std::unique_ptr<LinkType> clone() const { return std::make_unique<LinkType>(*this); }
};

/// The link types of the process's store; the host fills it from DBTools::selectLinkType.
extern MORASTORE_EXPORT QList<LinkType> &glLinkType;
