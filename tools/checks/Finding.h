#pragma once

#include "tools/checks/Rule.h"

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

namespace moratools {

/// One thing that a rule found wrong.
struct Finding {
    long network = 0; ///< 0 for what belongs to none
    QString table;    ///< empty where it is about no row
    std::optional<qint64> id;
    QString text; ///< one sentence: the object by its word, id and name, and what is wrong, with the values
    std::optional<QPointF> place; ///< metres
};

/// What one rule found.
struct RuleFindings {
    const Rule *rule = nullptr;
    qint64 count = 0;        ///< of all
    QList<Finding> findings; ///< the first of them, in the order in which they were found
};

/// Hears what one rule finds in one network, or in a store as a whole.
class MORATOOLS_EXPORT Reporter {
public:
    /// So many findings of a rule are kept; the others only count.
    static constexpr int kMostKept = 10000;

    Reporter(RuleFindings &found, long network) : mFound(found), mNetwork(network) {}

    /// @{ A row, or an object by its row, or with an empty table none; `text` is Finding::text.
    void find(const char *table, qint64 id, const QString &text);
    void find(const char *table, qint64 id, const QString &text, const QPointF &place);
    void find(const QString &text);
    void find(Finding finding);
    /// @}

private:
    RuleFindings &mFound;
    long mNetwork;
};

/// What a sentence calls an object: `link 12 "Via Marconi"`, without a name `lane 7`.
MORATOOLS_EXPORT QString called(const QString &word, qint64 id, const QString &name = {});

/// A number as a sentence shows it: up to six digits that matter, without an exponent where that is readable.
MORATOOLS_EXPORT QString shown(double number);

} // namespace moratools
