#include "tests/host/Morastore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QXmlStreamWriter>

#include <map>

// Files that say everything that the tables of docs/import.md list go into a store, and each value is looked for
// where the tables say.

namespace {

/// A row of the tables.
struct Listed {
    QStringList tables;
    QStringList columns; ///< attributes that have one
    QStringList kept;    ///< the other attributes
    QString place;       ///< where these are
};
using List = std::map<QString, Listed>; ///< by path

QStringList expanded(const QString &path) {
    static const QRegularExpression either(QStringLiteral("\\(([^()]*)\\)"));
    const QRegularExpressionMatch match = either.match(path);
    if (!match.hasMatch())
        return {path};
    QStringList paths;
    for (const QString &one : match.captured(1).split(QLatin1Char('|')))
        paths += expanded(path.left(match.capturedStart()) + one + path.mid(match.capturedEnd()));
    return paths;
}

QStringList namesIn(const QString &cell) {
    static const QRegularExpression code(QStringLiteral("`([^`]*)`"));
    QStringList names;
    for (auto match = code.globalMatch(cell); match.hasNext();)
        names += match.next().captured(1).split(QLatin1Char(' '));
    return names;
}

List listOf(const QStringList &titles) {
    List list;
    QFile manual(sourceFolder() + QStringLiteral("/docs/import.md"));
    EXPECT_TRUE(manual.open(QIODevice::ReadOnly));
    QString title;
    for (QString line : QString::fromUtf8(manual.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("### ")))
            title = line.mid(4);
        if (!line.startsWith(QLatin1String("| `")) || !titles.contains(title))
            continue;
        const QStringList cells =
            line.replace(QLatin1String("\\|"), QLatin1String("\x1f")).split(QStringLiteral(" |"));
        const QString place =
            cells[3].section(QLatin1String("`"), -1).section(QLatin1String(": "), -1).trimmed();
        for (const QString &path :
             expanded(namesIn(cells[0]).first().replace(QLatin1Char('\x1f'), QLatin1Char('|'))))
            list[path] = {cells[1].mid(1).split(QStringLiteral(", ")), namesIn(cells[2]), namesIn(cells[3]),
                          place};
    }
    return list;
}

/// Writes elements with all that they may have. What is only kept gets values that occur nowhere else.
class Writer {
public:
    /// `values` are those of attributes that the import reads, by "path attribute", or by the attribute alone;
    /// "*" stands for the path.
    Writer(const List &list, const std::map<QString, QString> &values)
        : mList(list), mValues(values), mXml(&mText) {}

    void begin(const QString &root, const QStringList &attributes = {}) {
        mXml.writeStartElement(root);
        for (const QString &name : attributes)
            attribute(QStringLiteral("."), name, true);
    }
    QByteArray end() {
        mXml.writeEndElement();
        return mText;
    }
    /// The element at `path`, those in it, a parameter, and an attribute and an element of a version to come.
    void element(const QString &path) {
        const Listed &listed = mList.at(path);
        mXml.writeStartElement(path.section(QLatin1Char('/'), -1).section(QLatin1Char(':'), 0, 0));
        for (const QString &name : listed.columns + listed.kept + QStringList{QStringLiteral("future")})
            attribute(path, name, listed.kept.contains(name) || name == QLatin1String("future"));
        for (const auto &inner : mList) {
            if (inner.first.startsWith(path + QLatin1Char('/')) &&
                inner.first.count(QLatin1Char('/')) == path.count(QLatin1Char('/')) + 1)
                element(inner.first);
        }
        const QString parameters = path + QStringLiteral("/param");
        const QString inside = mList.count(parameters) ? parameters : path;
        mXml.writeEmptyElement(QStringLiteral("param"));
        mXml.writeAttribute(QStringLiteral("key"), marker(inside, QStringLiteral("key")));
        mXml.writeAttribute(QStringLiteral("value"), marker(inside, QStringLiteral("value")));
        mXml.writeEmptyElement(QStringLiteral("future"));
        mXml.writeAttribute(QStringLiteral("f"), marker(inside, QStringLiteral("<future>")));
        mXml.writeEndElement();
    }

    struct Marker {
        QString path;
        QString name;
        QString place;
    };
    std::map<QString, Marker> markers; ///< by value

private:
    void attribute(const QString &path, const QString &name, bool isKept) {
        for (const QString &key : {path + QLatin1Char(' ') + name, name}) {
            const auto known = mValues.find(key);
            if (known == mValues.end())
                continue;
            const bool isPath = known->second == QLatin1String("*");
            if (!known->second.isNull())
                mXml.writeAttribute(name, isPath ? path : known->second);
            return;
        }
        EXPECT_TRUE(isKept) << "no value for " << path.toStdString() << " " << name.toStdString();
        mXml.writeAttribute(name, marker(path, name));
    }
    QString marker(const QString &path, const QString &name) {
        QString value = QStringLiteral("q%1q").arg(markers.size());
        const auto listed = mList.find(path);
        markers[value] = {path, name, listed == mList.end() ? QString() : listed->second.place};
        return value;
    }

    const List &mList;
    const std::map<QString, QString> &mValues;
    QByteArray mText;
    QXmlStreamWriter mXml;
};

/// All texts in a value, those that are packed as what they stand for.
void collect(const QJsonValue &value, QString &into) {
    if (value.isArray()) {
        for (const QJsonValue one : value.toArray())
            collect(one, into);
    } else if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto one = object.begin(); one != object.end(); ++one) {
            into += one.key() + QLatin1Char('\n');
            collect(one.value(), into);
        }
    } else if (value.isString()) {
        // What is packed begins with its size and the mark of zlib.
        const QByteArray bytes = QByteArray::fromBase64(value.toString().toLatin1());
        const QByteArray plain = bytes.mid(4, 1) == "\x78" ? qUncompress(bytes) : QByteArray();
        into += (plain.isEmpty() ? value.toString() : QString::fromUtf8(plain)) + QLatin1Char('\n');
    }
}

class NothingIsLost : public Morastore {
protected:
    /// What the store has at a place ("Link.otherAttrsJson sumo.junction").
    static QString textAt(const QString &store, const QString &place) {
        const QString table = place.section(QLatin1Char('.'), 0, 0);
        const QStringList path = place.section(QLatin1Char(' '), 1).split(QLatin1Char('.'));
        QString text;
        for (const QVariantList &row :
             allRows(store, QStringLiteral("select otherAttrsJson from %1").arg(table))) {
            QJsonValue value = QJsonDocument::fromJson(row.first().toByteArray()).object();
            for (const QString &step : path)
                value = value.toObject().value(step);
            collect(value, text);
        }
        return text;
    }
    static void expectAll(const QString &store, const Writer &writer) {
        std::map<QString, QString> texts;
        for (const auto &[value, marker] : writer.markers) {
            const auto known = texts.try_emplace(marker.place);
            if (known.second)
                known.first->second = textAt(store, marker.place);
            EXPECT_TRUE(known.first->second.contains(value))
                << marker.path.toStdString() << " " << marker.name.toStdString() << " is not in "
                << marker.place.toStdString();
        }
    }
};

/// Read by the import: an absent value (a null text) is one that would contradict another.
const std::map<QString, QString> kNetValues{
    {"edge id", "a"},
    {"edge from", "i"},
    {"edge to", "j"},
    {"function", "normal"},
    {"edge:inside function", "internal"},
    {"edge:inside id", ":j_0"},
    {"edge/lane id", "a_0"},
    {"edge:inside/lane id", ":j_0_0"},
    {"index", "0"},
    {"speed", "13"},
    {"length", "50"},
    {"width", "3"},
    {"shape", "0,0 50,0"},
    {"junction id", "j"},
    {"junction:inside id", ":j_0_0"},
    {"junction:inside type", "internal"},
    {"connection from", "a"},
    {"connection to", "b"},
    {"fromLane", "0"},
    {"toLane", "0"},
    {"connection via", ":j_0_0"},
    {"connection tl", "t"},
    {"connection linkIndex", "0"},
    {"connection:inside from", ":j_0"},
    {"connection:inside to", "b"},
    {"connection:inside via", QString()},
    {"tlLogic id", "t"},
    {"programID", "0"},
    {"offset", "0"},
    {"duration", "30"},
    {"state", "G"},
    {"next", "0"},
    {"connection state", "M"},
    {"lefthand", "false"},
};

TEST_F(NothingIsLost, OfANetwork) {
    const List list = listOf({QStringLiteral("Networks"), QStringLiteral("Signal programmes")});
    ASSERT_GT(list.size(), 30u);
    Writer writer(list, kNetValues);
    writer.begin(QStringLiteral("net"), list.at(QStringLiteral(".")).kept);
    for (const auto &entry : list) {
        if (!entry.first.contains(QLatin1Char('/')) && entry.first != QLatin1String("."))
            writer.element(entry.first);
    }
    QByteArray xml = writer.end();
    xml.replace("</net>", "<edge id=\"b\" from=\"j\" to=\"k\"><lane id=\"b_0\" index=\"0\" speed=\"9\" "
                          "length=\"50\" shape=\"60,0 110,0\"/></edge></net>");
    const QString store = newStore();
    const Outcome outcome = run({QStringLiteral("import"), store, write(QStringLiteral("all.net.xml"), xml)});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    expectAll(store, writer);
}

const std::map<QString, QString> kCompanionValues{
    {"lane", "west_in_0"},
    {"lanes", "west_in_0"},
    {"edges", "west_in approach_market"},
    {"from", "west_in"},
    {"to", "approach_market"},
    {"route", "r"},
    {"routes", "r"},
    {"probabilities", "1"},
    {"type", "t"},
    {"vTypes", "t"},
    {"begin", "0"},
    {"end", "60"},
    {"depart", "5"},
    {"duration", "5"},
    {"startPos", "1"},
    {"endPos", "20"},
    {"pos", "5"},
    {"length", "9"},
    {"width", "2"},
    {"maxSpeed", "20"},
    {"speedDev", "0.1"},
    {"accel", "2"},
    {"decel", "4"},
    {"emergencyDecel", "8"},
    {"probability", "0.5"},
    {"busStop", "busStop"},
    {"via", QString()},
    {"line", "busStop"},
    {"number", "3"},
    {"period", "20"},
    {"freq", "20"},
    {"vehsPerHour", "180"},
    {"perHour", "180"},
    {"personsPerHour", "180"},
    {"containersPerHour", "180"},
    {"ratio", "1"},
    {"count", "1"},
    {"time", "0"},
    {"speed", "10"},
    {"jamThreshold", "10"},
    {"speedThreshold", "1"},
    {"refId", QString()},
    {"lines", "busStop"},
    {"id", "*"},
    {"vType id", "t"},
    {"route id", "r"},
    {"interval/fromEdge id", "west_in"},
    {"interval/fromEdge/toEdge id", "approach_market"},
    {"rerouter/interval/closingReroute id", "west_in"},
    {"rerouter/interval/closingLaneReroute id", "west_in_0"},
    {"tlLogic id", "market"},
    {"programID", "9"},
    {"offset", "0"},
    {"state", "GGGGGGGGGGGGGGGG"},
    {"next", "0"},
    {"speedFactor", "1"},
    {"desiredMaxSpeed", "20"},
    {"e3Detector/detExit lane", "approach_market_0"},
    {"entryExitDetector/detExit lane", "approach_market_0"},
};

TEST_F(NothingIsLost, OfDemandAndAdditionalObjects) {
    const List list = listOf({QStringLiteral("Demand"), QStringLiteral("Additional objects"),
                              QStringLiteral("Signal programmes")});
    ASSERT_GT(list.size(), 100u);
    Writer writer(list, kCompanionValues);
    writer.begin(QStringLiteral("additional"));
    for (const auto &entry : list) {
        // A file that is included is one of its own.
        if (!entry.first.contains(QLatin1Char('/')) && entry.first != QLatin1String("include"))
            writer.element(entry.first);
    }
    const QString store = newStore();
    const QString file = write(QStringLiteral("all.add.xml"), writer.end());
    const Outcome outcome =
        run({QStringLiteral("import"), store, kExample, QStringLiteral("--additional"), file});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    expectAll(store, writer);
}

} // namespace
