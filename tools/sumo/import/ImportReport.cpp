#include "tools/sumo/import/ImportReport.h"

#include "tools/sumo/reader/XmlInput.h"
#include "tools/sumo/schema/Schema.h"

#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>

#include <map>
#include <tuple>

namespace moratools {

namespace {

constexpr int kElementsBetweenReports = 2000;

/// What became of an element otherwise than the list says of its kind.
struct Exception {
    bool isKept = false; ///< and nothing else
    QString reason;      ///< why it is left out

    bool isNone() const { return !isKept && reason.isEmpty(); }
    friend bool operator<(const Exception &a, const Exception &b) {
        return std::tie(a.isKept, a.reason) < std::tie(b.isKept, b.reason);
    }
};
using Exceptions = QHash<qint64, Exception>; ///< by the element's number in a file

/// The elements at one place of the files, and their attributes.
struct Place {
    QString path;
    Exception exception;
    qint64 count = 0;
    QHash<QString, qint64> attributes;                     ///< a file may make up as many as it likes
    std::map<std::pair<QString, Exception>, Place> inside; ///< by step of the path

    void add(const QXmlStreamAttributes &given);
    Place &at(const QString &step, const Exception &except);
};

void Place::add(const QXmlStreamAttributes &given) {
    ++count;
    for (const QXmlStreamAttribute &attribute : given) {
        const QStringRef name = attribute.qualifiedName();
        const auto known = attributes.find(QString::fromRawData(name.data(), name.size()));
        if (known != attributes.end())
            ++*known;
        else
            attributes.insert(name.toString(), 1);
    }
}

Place &Place::at(const QString &step, const Exception &except) {
    const auto known = inside.try_emplace({step, except});
    Place &place = known.first->second;
    if (known.second) {
        place.path = path == QLatin1String(".") ? step : path + QLatin1Char('/') + step;
        place.exception = except;
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
    Counting(XmlInput &input, schema::FileKind kind, const Exceptions &exceptions, const Progress &progress)
        : mInput(input), mKind(kind), mExceptions(exceptions), mProgress(progress) {}

    void count(Place &root) {
        root.add(mInput.attributes());
        countInside(root);
    }

private:
    static bool isFinal(const Exception &exception) { return !exception.reason.isEmpty(); }

    void countInside(Place &outer) {
        while (mInput.nextElement()) {
            if (mInput.elementNumber() % kElementsBetweenReports == 0)
                reportShare(mProgress, mInput.progress());
            const QXmlStreamAttributes given = mInput.attributes();
            QString step = mInput.name().toString();
            if (mKind == schema::FileKind::Network && outer.path == QLatin1String(".") &&
                isInside(mInput.name(), given))
                step += QStringLiteral(":inside");
            // What is in such an element goes with it, but for what is left out of one that is kept.
            const Exception own = mExceptions.value(mInput.elementNumber());
            Place &place = outer.at(step, isFinal(outer.exception) || own.isNone() ? outer.exception : own);
            place.add(given);
            countInside(place);
        }
    }

    XmlInput &mInput;
    schema::FileKind mKind;
    const Exceptions &mExceptions;
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
        if (!place.exception.reason.isEmpty())
            fate = {schema::Target::LeftOut, {}, place.exception.reason, true};
        else if (place.exception.isKept)
            fate = schema::fateOfKept(kind, place.path);
        rows[{element, attribute, fate.target, fate.where, fate.reason}] += count;
    };
    add({}, place.count);
    for (auto attribute = place.attributes.cbegin(); attribute != place.attributes.cend(); ++attribute)
        add(attribute.key(), *attribute);
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
    QHash<int, Exceptions> exceptions; // by file
    for (const auto *list : {&companions.withoutRecord, &leftOut.keptElements()}) {
        for (const SumoSource &source : *list)
            exceptions[source.file].insert(source.element, {true, {}});
    }
    for (const LeftOut::Element &element : leftOut.elements())
        exceptions[element.source.file].insert(element.source.element, {false, withoutNames(element.reason)});
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
        Counting(input, kind, exceptions[file], progress).count(place);
        addRows(rows, kind, place, root);
        const QFileInfo info(paths[i]);
        files.append(
            QJsonObject{{QStringLiteral("name"), info.fileName()}, {QStringLiteral("bytes"), info.size()}});
    }
    return {{QStringLiteral("files"), files}, {QStringLiteral("elements"), toJson(rows)}};
}

} // namespace moratools
