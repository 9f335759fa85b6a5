#include "tools/sumo/import/ImportReport.h"

#include "tools/sumo/reader/XmlInput.h"
#include "tools/sumo/schema/Schema.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <tuple>

namespace moratools {

namespace {

constexpr int kElementsBetweenReports = 2000;

/// The elements at one place of the files, and their attributes.
struct Place {
    QString path;
    QString reason; ///< why they are left out; empty for those that are not
    qint64 count = 0;
    std::vector<std::pair<QString, qint64>> attributes;
    std::map<std::pair<QString, QString>, Place> inside; ///< by step of the path and reason

    void add(const QXmlStreamAttributes &given);
    Place &at(const QString &step, const QString &why);
};

void Place::add(const QXmlStreamAttributes &given) {
    ++count;
    for (const QXmlStreamAttribute &attribute : given) {
        const QStringRef name = attribute.qualifiedName();
        const auto known = std::find_if(attributes.begin(), attributes.end(),
                                        [&name](const auto &entry) { return name == entry.first; });
        if (known != attributes.end())
            ++known->second;
        else
            attributes.emplace_back(name.toString(), 1);
    }
}

Place &Place::at(const QString &step, const QString &why) {
    const auto known = inside.try_emplace({step, why});
    Place &place = known.first->second;
    if (known.second) {
        place.path = path == QLatin1String(".") ? step : path + QLatin1Char('/') + step;
        place.reason = why;
    }
    return place;
}

bool isInside(const QStringRef &name, const QXmlStreamAttributes &given) {
    if (name == QLatin1String("edge")) {
        const QStringRef function = given.value(QLatin1String("function"));
        return !function.isEmpty() && function != QLatin1String("normal");
    }
    if (name == QLatin1String("junction"))
        return given.value(QLatin1String("type")) == QLatin1String("internal");
    return name == QLatin1String("connection") &&
           (given.value(QLatin1String("from")).startsWith(QLatin1Char(':')) ||
            given.value(QLatin1String("to")).startsWith(QLatin1Char(':')));
}

/// Counts what one file has.
class Counting {
public:
    Counting(XmlInput &input, schema::FileKind kind, const QHash<qint64, QString> &leftOut,
             const Progress &progress)
        : mInput(input), mKind(kind), mLeftOut(leftOut), mProgress(progress) {}

    void count(Place &root) {
        root.add(mInput.attributes());
        countInside(root);
    }

private:
    void countInside(Place &outer) {
        while (mInput.nextElement()) {
            if (mInput.elementNumber() % kElementsBetweenReports == 0)
                reportShare(mProgress, mInput.progress());
            const QXmlStreamAttributes given = mInput.attributes();
            QString step = mInput.name().toString();
            if (mKind == schema::FileKind::Network && outer.path == QLatin1String(".") &&
                isInside(mInput.name(), given))
                step += QStringLiteral(":inside");
            // What is in an element that is left out goes with it.
            Place &place = outer.at(step, outer.reason.isEmpty() ? mLeftOut.value(mInput.elementNumber())
                                                                 : outer.reason);
            place.add(given);
            countInside(place);
        }
    }

    XmlInput &mInput;
    schema::FileKind mKind;
    const QHash<qint64, QString> &mLeftOut;
    const Progress &mProgress;
};

/// Without the names that it mentions.
QString withoutNames(QString reason) {
    static const QRegularExpression name(QStringLiteral(" ?\"[^\"]*\""));
    return reason.remove(name);
}

using Row = std::tuple<QString, QString, schema::Target, QString, QString>; ///< element, attribute, fate
using Rows = std::map<Row, qint64>;

void addRows(Rows &rows, schema::FileKind kind, const Place &place, const QString &element) {
    const auto add = [&](const QString &attribute, qint64 count) {
        schema::Fate fate = schema::fateOf(kind, place.path, attribute);
        if (!place.reason.isEmpty())
            fate = {schema::Target::LeftOut, {}, place.reason, true};
        rows[{element, attribute, fate.target, fate.where, fate.reason}] += count;
    };
    add({}, place.count);
    for (const auto &[name, count] : place.attributes)
        add(name, count);
    for (const auto &inner : place.inside)
        addRows(rows, kind, inner.second, inner.first.first.section(QLatin1Char(':'), 0, 0));
}

QJsonArray toJson(const Rows &rows) {
    static const QString targets[] = {QStringLiteral("column"), QStringLiteral("attributes"),
                                      QStringLiteral("leftOut")};
    QJsonArray array;
    for (const auto &[row, count] : rows) {
        const auto &[element, attribute, target, where, reason] = row;
        QJsonObject entry{{QStringLiteral("element"), element},
                          {QStringLiteral("attribute"), attribute.isEmpty() ? QJsonValue() : attribute},
                          {QStringLiteral("read"), count},
                          {QStringLiteral("target"), targets[int(target)]},
                          {QStringLiteral("where"), where.isEmpty() ? QJsonValue() : where}};
        if (!reason.isEmpty())
            entry.insert(QStringLiteral("reason"), reason);
        array.append(entry);
    }
    return array;
}

} // namespace

QJsonObject importReport(const SumoNet &net, const SumoCompanions &companions, const LeftOut &leftOut,
                         const Progress &progress) {
    QHash<int, QHash<qint64, QString>> reasons;
    for (const LeftOut::Element &element : leftOut.elements())
        reasons[element.source.file].insert(element.source.element, withoutNames(element.reason));
    const QStringList paths = QStringList(net.path) + companions.files;
    Rows rows;
    QJsonArray files;
    for (int i = 0; i < paths.size(); ++i) {
        const schema::FileKind kind = i == 0 ? schema::FileKind::Network : schema::FileKind::Companion;
        XmlInput input(paths[i], QString(), QStringLiteral("a SUMO file"));
        const QString root = input.name().toString();
        Place place;
        place.path = QStringLiteral(".");
        const int file = i == 0 ? SumoSource::kNetwork : i - 1;
        Counting(input, kind, reasons[file], progress).count(place);
        addRows(rows, kind, place, root);
        const QFileInfo info(paths[i]);
        files.append(
            QJsonObject{{QStringLiteral("name"), info.fileName()}, {QStringLiteral("bytes"), info.size()}});
    }
    return {{QStringLiteral("files"), files}, {QStringLiteral("elements"), toJson(rows)}};
}

} // namespace moratools
