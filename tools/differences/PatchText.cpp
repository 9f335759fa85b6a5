#include "tools/differences/PatchText.h"

#include "tools/reports/Failure.h"
#include "tools/rows/FormatSchema.h"

#include <QIODevice>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace moratools {

namespace {

// Whole numbers up to here are doubles without loss, which is what JSON's numbers are read as.
constexpr qint64 kLargestExact = qint64(1) << 53;
// A store takes no value that is longer.
constexpr qint64 kLongestLine = qint64(256) * 1024 * 1024;

constexpr const char *kVersion = "patch";
constexpr const char *kTable = "table";
constexpr const char *kKey = "key";
constexpr const char *kBefore = "before";
constexpr const char *kAfter = "after";
constexpr const char *kWords = "words";

struct NamedLanguage {
    Language language;
    const char *name;
};
constexpr NamedLanguage kLanguages[] = {
    {Language::English, "English"}, {Language::Chinese, "Chinese"}, {Language::Unknown, "none"}};

struct NamedReal {
    const char *name;
    double value;
};
constexpr NamedReal kRealsBeside[] = {{"nan", std::numeric_limits<double>::quiet_NaN()},
                                      {"inf", std::numeric_limits<double>::infinity()},
                                      {"-inf", -std::numeric_limits<double>::infinity()}};

QJsonValue tagged(const char *form, const QByteArray &text) {
    return QJsonObject{{QLatin1String(form), QString::fromLatin1(text)}};
}

bool fromTagged(const QJsonObject &json, QVariant &value) {
    const QString form = json.size() == 1 ? json.constBegin().key() : QString();
    const QString text = json.size() == 1 ? json.constBegin().value().toString() : QString();
    if (form == QLatin1String("integer")) {
        bool isInteger = false;
        value = text.toLongLong(&isInteger);
        return isInteger;
    }
    if (form == QLatin1String("bytes")) {
        const auto decoded =
            QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        value = *decoded;
        return bool(decoded);
    }
    for (const NamedReal &real : kRealsBeside) {
        value = real.value;
        if (form == QLatin1String("real") && text == QLatin1String(real.name))
            return true;
    }
    return false;
}

QByteArray objectText(const QJsonObject &object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool isDigest(const QString &text) {
    constexpr int digits = 64;
    return text.size() == digits && QByteArray::fromHex(text.toLatin1()).toHex() == text.toLatin1();
}

} // namespace

namespace patchtext {

QJsonValue toJson(const QVariant &value) {
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QJsonValue::Null;
    case QMetaType::LongLong: {
        const qint64 number = value.toLongLong();
        const bool isExact = number >= -kLargestExact && number <= kLargestExact;
        return isExact ? QJsonValue(number) : tagged("integer", QByteArray::number(number));
    }
    case QMetaType::Double: {
        const double number = value.toDouble();
        if (std::isfinite(number))
            return number;
        return tagged("real", std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf");
    }
    case QMetaType::QByteArray:
        return tagged("bytes", value.toByteArray().toBase64());
    default:
        return value.toString();
    }
}

bool fromJson(const QJsonValue &json, QVariant &value) {
    switch (json.type()) {
    case QJsonValue::Null:
        value = QVariant();
        return true;
    case QJsonValue::Double: {
        const double number = json.toDouble();
        const bool isInteger = std::abs(number) <= double(kLargestExact) && std::trunc(number) == number;
        value = isInteger ? QVariant(qint64(number)) : QVariant(number);
        return true;
    }
    case QJsonValue::String:
        value = json.toString();
        return value.toString().isValidUtf16();
    case QJsonValue::Object:
        return fromTagged(json.toObject(), value);
    default:
        return false;
    }
}

QJsonObject toJson(const RowValues &values) {
    QJsonObject object;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        object.insert(value.key(), toJson(value.value()));
    return object;
}

QByteArray lineOf(const PatchHeader &header) {
    QByteArray words;
    for (const NamedLanguage &language : kLanguages)
        words = language.language == header.words ? QByteArray(language.name) : words;
    return "{\"patch\":1,\"before\":\"" + header.before.toLatin1() + "\",\"after\":\"" +
           header.after.toLatin1() + "\",\"words\":\"" + words + "\"}\n";
}

QByteArray lineOf(const RowChange &change) {
    QByteArray line = QByteArray("{\"table\":\"") + change.table->name + '"';
    if (change.kind == RowChange::Kind::Changed)
        line += ",\"key\":" + objectText(toJson(change.key));
    if (change.kind != RowChange::Kind::Added)
        line += ",\"before\":" + objectText(toJson(change.before));
    if (change.kind != RowChange::Kind::Removed)
        line += ",\"after\":" + objectText(toJson(change.after));
    return line + "}\n";
}

} // namespace patchtext

PatchReader::PatchReader(QIODevice &device, const QString &name) : mDevice(device), mName(name) {
    const QJsonObject header = readObject();
    if (header.value(QLatin1String(kVersion)).toInt() != 1)
        refuse(QStringLiteral("is no header of a patch; give a file that \"morastore diff -o\" has written"));
    mHeader.before = header.value(QLatin1String(kBefore)).toString();
    mHeader.after = header.value(QLatin1String(kAfter)).toString();
    const QString words = header.value(QLatin1String(kWords)).toString();
    bool isKnown = isDigest(mHeader.before) && isDigest(mHeader.after) && header.size() == 4;
    bool hasWords = false;
    for (const NamedLanguage &language : kLanguages) {
        if (words == QLatin1String(language.name)) {
            mHeader.words = language.language;
            hasWords = true;
        }
    }
    isKnown = isKnown && hasWords;
    if (!isKnown)
        refuse(QStringLiteral("lacks a digest or the language of the words; write the patch anew"));
}

void PatchReader::refuse(const QString &objection) const {
    throw Failure(QStringLiteral("%1: line %2 %3").arg(mName, QString::number(mLine), objection));
}

QJsonObject PatchReader::readObject() {
    const QByteArray line = mDevice.readLine(kLongestLine);
    ++mLine;
    if (!line.endsWith('\n'))
        refuse(line.size() >= kLongestLine - 1
                   ? QStringLiteral("is longer than a store takes; write the patch anew")
                   : QStringLiteral("is not complete; fetch or write the patch anew"));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (!document.isObject())
        refuse(QStringLiteral("is no JSON object (%1); write the patch anew").arg(error.errorString()));
    return document.object();
}

bool PatchReader::next(RowChange &change) {
    if (mDevice.atEnd())
        return false;
    const QJsonObject line = readObject();
    const QString name = line.value(QLatin1String(kTable)).toString();
    const catalogue::Table *table = catalogue::find(name);
    if (!table)
        refuse(QStringLiteral("names a table \"%1\", which no network has; correct the patch").arg(name));
    const bool hasBefore = line.contains(QLatin1String(kBefore));
    const bool hasAfter = line.contains(QLatin1String(kAfter));
    const bool isChange = hasBefore && hasAfter;
    if (line.contains(QLatin1String(kKey)) != isChange || !(hasBefore || hasAfter) ||
        line.size() != (isChange ? 4 : 2))
        refuse(QStringLiteral("says neither what row was there nor what it becomes; correct the patch"));
    change = {};
    change.table = table;
    change.kind = isChange    ? RowChange::Kind::Changed
                  : hasBefore ? RowChange::Kind::Removed
                              : RowChange::Kind::Added;
    if (hasBefore)
        change.before = valuesOf(line.value(QLatin1String(kBefore)), *table);
    if (hasAfter)
        change.after = valuesOf(line.value(QLatin1String(kAfter)), *table);
    if (isChange) {
        change.key = valuesOf(line.value(QLatin1String(kKey)), *table);
        if (change.before.keys() != change.after.keys())
            refuse(QStringLiteral("does not give both values of each column; correct the patch"));
        for (auto column = change.key.cbegin(); column != change.key.cend(); ++column) {
            if (change.before.contains(column.key()))
                refuse(QStringLiteral("changes what tells its row from others; correct the patch"));
        }
    }
    return true;
}

RowValues PatchReader::valuesOf(const QJsonValue &json, const catalogue::Table &table) const {
    RowValues values;
    const QJsonObject object = json.toObject();
    if (!json.isObject())
        refuse(QStringLiteral("has no row where one belongs; correct the patch"));
    for (auto column = object.constBegin(); column != object.constEnd(); ++column) {
        const QString key = column.key().toLower();
        const QString name = formatName(QLatin1String(table.name), key);
        if (key == QLatin1String("netid") ||
            (key == QLatin1String("isdefault") && qstrcmp(table.name, "Net") == 0))
            refuse(QStringLiteral(
                       "names a column \"%1\" that table %2 of a network does not have; correct the patch")
                       .arg(column.key(), QLatin1String(table.name)));
        QVariant value;
        if (!patchtext::fromJson(column.value(), value))
            refuse(QStringLiteral("has no value for column %1; correct the patch").arg(column.key()));
        if (values.contains(name))
            refuse(QStringLiteral("names column %1 twice; correct the patch").arg(name));
        values.insert(name, value);
    }
    return values;
}

} // namespace moratools
