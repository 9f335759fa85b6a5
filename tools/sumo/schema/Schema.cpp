#include "tools/sumo/schema/Schema.h"

#include "tools/sumo/schema/SchemaElements.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace moratools::schema {

namespace {

const QString kParameter = QStringLiteral("param");
const QString kSchemaPrefix = QStringLiteral("xsi:");
const QString kNetPlace = QStringLiteral("Net.otherAttrsJson sumo.elements");
const QString kCompanionPlace = QStringLiteral("Net.otherAttrsJson sumo.files");

QStringList wordsOf(const char *text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// The paths that one with alternatives stands for.
QStringList expanded(const QString &path) {
    const int open = path.indexOf(QLatin1Char('('));
    if (open < 0)
        return {path};
    const int close = path.indexOf(QLatin1Char(')'), open);
    QStringList paths;
    for (const QString &either : path.mid(open + 1, close - open - 1).split(QLatin1Char('|')))
        paths += expanded(path.left(open) + either + path.mid(close + 1));
    return paths;
}

QString parentOf(const QString &path) {
    return path.left(std::max(0, path.lastIndexOf(QLatin1Char('/'))));
}

struct Entry {
    QString tables;
    QString place;
    QHash<QString, QString> places; ///< by attribute: a column, or empty for one that is kept
};

using Entries = QHash<QString, Entry>;

void add(Entries &entries, const std::vector<Element> &elements) {
    for (const Element &element : elements) {
        Entry entry{QLatin1String(element.tables), QLatin1String(element.place), {}};
        for (const QString &column : wordsOf(element.columns))
            entry.places.insert(column.section(QLatin1Char('='), 0, 0), column.section(QLatin1Char('='), 1));
        for (const QString &attribute : wordsOf(element.attributes))
            entry.places.insert(attribute, QString());
        for (const QString &path : expanded(QLatin1String(element.path)))
            entries.insert(path, entry);
    }
}

const Entries &entriesOf(FileKind kind) {
    static const Entries network = [] {
        Entries entries;
        add(entries, netElements());
        add(entries, programmeElements());
        return entries;
    }();
    static const Entries companion = [] {
        Entries entries;
        add(entries, demandElements());
        add(entries, additionalElements());
        add(entries, programmeElements());
        return entries;
    }();
    return kind == FileKind::Network ? network : companion;
}

/// Where what stands at `path` is kept: with the nearest element that the list has, in it like its parameters.
QString placeAt(FileKind kind, const QString &path) {
    const Entries &entries = entriesOf(kind);
    for (QString at = path; !at.isEmpty(); at = parentOf(at)) {
        for (const QString &near : {at, parentOf(at) + QLatin1Char('/') + kParameter}) {
            const auto known = entries.constFind(near);
            if (known != entries.constEnd())
                return known->place;
        }
    }
    return kind == FileKind::Network ? kNetPlace : kCompanionPlace;
}

Fate fateOfRoot(FileKind kind, const QString &attribute) {
    const bool isSchema = attribute.startsWith(kSchemaPrefix);
    const auto root = entriesOf(kind).constFind(QStringLiteral("."));
    if (root != entriesOf(kind).constEnd())
        return {Target::Attributes,
                root->place,
                {},
                attribute.isEmpty() || isSchema || root->places.contains(attribute)};
    if (attribute.isEmpty())
        return {Target::Attributes, kCompanionPlace, {}, true};
    if (isSchema)
        return {
            Target::LeftOut, {}, QStringLiteral("a file that is written names the schema of its own"), true};
    return {Target::LeftOut, {}, QStringLiteral("the root of such a file says nothing"), false};
}

} // namespace

Fate fateOf(FileKind kind, const QString &path, const QString &attribute) {
    if (path == QLatin1String("."))
        return fateOfRoot(kind, attribute);
    const Entries &entries = entriesOf(kind);
    Fate fate{Target::Attributes, placeAt(kind, path), {}, false};
    const auto known = entries.constFind(path);
    if (known == entries.constEnd()) {
        // Parameters may be anywhere.
        fate.isListed =
            path.endsWith(QLatin1Char('/') + kParameter) && fateOf(kind, parentOf(path)).isListed &&
            (attribute.isEmpty() || attribute == QLatin1String("key") || attribute == QLatin1String("value"));
        return fate;
    }
    const QString column = attribute.isEmpty() ? known->tables : known->places.value(attribute);
    fate.isListed = attribute.isEmpty() || known->places.contains(attribute);
    if (known->place.isEmpty())
        return {Target::LeftOut, {}, QStringLiteral("a file of its own; give it by itself"), fate.isListed};
    if (!column.isEmpty())
        fate = {Target::Column, column, {}, true};
    return fate;
}

Fate fateOfKept(FileKind kind, const QString &path) {
    return {Target::Attributes, placeAt(kind, path), {}, true};
}

namespace {

QString code(const QString &text) {
    // A bar would end the cell.
    return QLatin1Char('`') + QString(text).replace(QLatin1Char('|'), QLatin1String("\\|")) +
           QLatin1Char('`');
}

QString rowOf(const Element &element) {
    QStringList columns;
    for (const QString &column : wordsOf(element.columns))
        columns.append(code(column.section(QLatin1Char('='), 0, 0)) + QLatin1Char(' ') +
                       column.section(QLatin1Char('='), 1));
    const QString kept = wordsOf(element.attributes).join(QLatin1Char(' '));
    const QString place = *element.place ? QLatin1String(element.place) : QStringLiteral("left out");
    const QString keptCell = (kept.isEmpty() ? QString() : code(kept) + QStringLiteral(": ")) + place;
    return QStringLiteral("| %1 | %2 | %3 | %4 |\n")
        .arg(code(QLatin1String(element.path)), QLatin1String(element.tables),
             columns.join(QStringLiteral(", ")), keptCell);
}

QString tableOf(const QString &title, const std::vector<Element> &elements) {
    QString text =
        QStringLiteral("### %1\n\n| element | becomes | attributes with a column | the others are kept in |\n"
                       "| --- | --- | --- | --- |\n")
            .arg(title);
    for (const Element &element : elements)
        text += rowOf(element);
    return text;
}

} // namespace

QString asMarkdown() {
    return tableOf(QStringLiteral("Networks"), netElements()) + QLatin1Char('\n') +
           tableOf(QStringLiteral("Demand"), demandElements()) + QLatin1Char('\n') +
           tableOf(QStringLiteral("Additional objects"), additionalElements()) + QLatin1Char('\n') +
           tableOf(QStringLiteral("Signal programmes"), programmeElements());
}

} // namespace moratools::schema
