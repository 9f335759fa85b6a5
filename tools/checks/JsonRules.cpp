#include "model/GeometryJson.h"
#include "store/bulk/JsonCheck.h"
#include "store/catalogue/Catalogue.h"
#include "tools/checks/Checked.h"
#include "tools/checks/Finding.h"
#include "tools/checks/RuleGroups.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace moratools {

namespace {

enum class Fault { NotJson, NoObject, NoPoints, NoNumbers };

/// What is wrong with the JSON columns of a network: one pass for all rules.
class JsonFaults {
public:
    struct Found {
        Fault fault;
        Finding finding;
    };

    explicit JsonFaults(const Checked &checked) {
        for (const catalogue::Table &entry : catalogue::tables()) {
            if (const StoreTable *table = checked.rows().table(QLatin1String(entry.name)))
                pass(checked, entry, *table);
        }
    }

    void report(Fault fault, Reporter &reporter) const {
        for (const Found &found : mFound) {
            if (found.fault == fault)
                reporter.find(found.finding);
        }
    }

private:
    void pass(const Checked &checked, const catalogue::Table &entry, const StoreTable &table) {
        const StoreColumn *id = table.column(QLatin1String(entry.id            ? entry.id
                                                           : entry.key.empty() ? ""
                                                                               : entry.key[0]));
        QStringList names;
        QStringList selected{id ? quotedName(id->name) : QStringLiteral("null")};
        for (const StoreColumn &column : table.columns) {
            if (!column.key.endsWith(QLatin1String("json")))
                continue;
            names.append(column.name);
            selected.append(quotedName(column.name));
        }
        if (names.isEmpty())
            return;
        QSqlQuery rows = checked.rows().run(QStringLiteral("select %1 from %2%3")
                                                .arg(selected.join(QLatin1Char(',')), quotedName(table.name),
                                                     checked.rows().condition(table, checked.net())));
        while (rows.next()) {
            for (int i = 0; i < names.size(); ++i) {
                const QVariant value = rows.value(i + 1);
                const QByteArray text = value.userType() == QMetaType::QByteArray ? value.toByteArray()
                                                                                  : value.toString().toUtf8();
                if (!text.isEmpty())
                    judge(entry, rows.value(0).toLongLong(), names[i], text);
            }
        }
        checked.rows().check(rows);
    }

    void judge(const catalogue::Table &entry, qint64 id, const QString &column, const QByteArray &text) {
        const bool isGeometry = column.endsWith(QLatin1String("PointsJson"), Qt::CaseInsensitive);
        if (isGeometry) {
            if (geometryjson::hasStoredForm(text))
                return;
        } else if (isJsonObject(text)) {
            return;
        }
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(text, &error);
        if (document.isNull())
            find(Fault::NotJson, entry, id,
                 QStringLiteral("%1 is no JSON (%2, at byte %3)")
                     .arg(column, error.errorString(), QString::number(error.offset)));
        else if (!document.isObject())
            find(Fault::NoObject, entry, id, QStringLiteral("%1 is JSON, but no object").arg(column));
        // Programs write an empty object where nothing is drawn.
        else if (isGeometry && !document.object().isEmpty())
            judgePoints(entry, id, column, document.object().value(QLatin1String("data")));
    }

    void judgePoints(const catalogue::Table &entry, qint64 id, const QString &column,
                     const QJsonValue &data) {
        if (!data.isArray()) {
            find(Fault::NoPoints, entry, id, QStringLiteral("%1 has no list \"data\" of points").arg(column));
            return;
        }
        const QJsonArray points = data.toArray();
        for (int i = 0; i < points.size(); ++i) {
            const QJsonObject point = points[i].toObject();
            for (const char *axis : {"x", "y", "z"}) {
                const QJsonValue value = point.value(QLatin1String(axis));
                // Heights may be left out.
                if (value.isDouble() || (value.isUndefined() && *axis == 'z' && points[i].isObject()))
                    continue;
                find(Fault::NoNumbers, entry, id,
                     QStringLiteral("point %1 of %2 has no number %3")
                         .arg(QString::number(i + 1), column, QLatin1String(axis)));
                return;
            }
        }
    }

    void find(Fault fault, const catalogue::Table &entry, qint64 id, const QString &what) {
        // A damaged store can have one in each row.
        if (mFound.size() >= std::size_t(4) * Reporter::kMostKept)
            return;
        const QString object = called(catalogue::wordFor(QLatin1String(entry.name)), id);
        mFound.push_back(
            {fault,
             Finding{0, QLatin1String(entry.name), id, QStringLiteral("%1: %2").arg(object, what), {}}});
    }

    std::vector<Found> mFound;
};

template <Fault kind>
void report(const Checked &checked, Reporter &reporter) {
    checked.made<JsonFaults>().report(kind, reporter);
}

} // namespace

std::vector<Rule> jsonRules() {
    return {
        {"json.does-not-parse", "json", Severity::Error, Scope::Rows,
         "A column of JSON holds something else, and reads as empty.",
         "Restore the text; a program that saves the object anew writes what it read: nothing.",
         report<Fault::NotJson>},
        {"json.no-object", "json", Severity::Error, Scope::Rows,
         "A column of JSON holds a list where an object belongs, and reads as empty.",
         "Make the list a member of an object.", report<Fault::NoObject>},
        {"json.no-points", "json", Severity::Error, Scope::Rows,
         "Geometry is an object without the list \"data\", and reads as a line without points.",
         "Write the points as {\"data\":[{\"x\":..,\"y\":..,\"z\":..}, ..]}.", report<Fault::NoPoints>},
        {"json.point-without-numbers", "json", Severity::Error, Scope::Rows,
         "A point of a line has no number x, y or z there, and reads as 0.",
         "Write the coordinates as numbers, metres.", report<Fault::NoNumbers>},
    };
}

} // namespace moratools
