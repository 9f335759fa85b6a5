#pragma once

#include "model/NetLists.h"
#include "tools/MoraToolsExport.h"

#include <QHash>
#include <QString>
#include <QVariant>

#include <vector>

namespace moratools {

struct KeptElement;

/// Tells whether the objects that an import made of a file's elements are still as it made them: digests of all
/// their values, with names in place of identifiers. They are the same before a save and after a load, on every
/// kind of store and in every language, whatever numbers the objects have.
class MORATOOLS_EXPORT Digests {
public:
    /// `network` must outlive this object.
    explicit Digests(const NetLists &network);

    /// Of the objects that were made of this element alone (a vehicle type, a distribution, a detector, a stop, a
    /// sign, closures, a signal programme); empty where there are none. They are found by the id.
    QString of(const KeptElement &element) const;
    /// Whether an import makes objects of such an element alone.
    static bool isMadeAlone(const QString &elementName);
    QString of(const SignalGroup &group) const;
    /// Of what vehicles, routes, flows, persons and turn ratios have become together: departure points, decision
    /// points with their routes, compositions, bus lines, accidents.
    QString demand() const;

private:
    QByteArray textOf(const QVariantMap &fields) const;
    QByteArray textOf(const QString &field, const QVariant &value) const;
    template <class T>
    QByteArray textOf(const Objects<T> &objects) const;
    template <class T>
    void enterNames(const char *field, const Objects<T> &objects);
    template <class T>
    void enterTexts(const Objects<T> &objects);
    QByteArray textOf(const char *table, const QString &id) const;

    const NetLists &mNetwork;
    QHash<QString, QHash<long, QString>> mNameOf;   ///< by the field that refers, and by number
    QHash<QString, std::vector<QByteArray>> mTexts; ///< of objects by their table and id
};

} // namespace moratools
