#include "host/sumo/XmlInput.h"

#include "host/Failure.h"

#include <KCompressionDevice>

#include <QFileInfo>
#include <QVector>

#include <cmath>

namespace {

constexpr char kGzipMagic[] = "\x1f\x8b";

/// A finite number without a negative zero. A text that reads "-0.00" means zero.
bool parseNumber(const QStringRef &text, double &value) {
    bool ok = false;
    value = text.toDouble(&ok) + 0.0;
    return ok && std::isfinite(value);
}

bool parsePoint(const QStringRef &text, Point3 &point) {
    const int firstComma = text.indexOf(QLatin1Char(','));
    if (firstComma < 0)
        return false;
    const int secondComma = text.indexOf(QLatin1Char(','), firstComma + 1);
    const int yEnd = secondComma < 0 ? text.size() : secondComma;
    return parseNumber(text.left(firstComma), point.x) &&
           parseNumber(text.mid(firstComma + 1, yEnd - firstComma - 1), point.y) &&
           (secondComma < 0 || parseNumber(text.mid(secondComma + 1), point.z));
}

} // namespace

XmlInput::XmlInput(const QString &path, const QString &root, const QString &expected) : mFile(path) {
    const QFileInfo info(path);
    if (!info.exists())
        throw Failure(QStringLiteral("%1: no such file; give the path of %2").arg(path, expected));
    if (info.isDir())
        throw Failure(QStringLiteral("%1: this is a folder; give the path of %2").arg(path, expected));
    if (!mFile.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("%1: cannot be read (%2)").arg(path, mFile.errorString()));
    mSize = mFile.size();
    if (mFile.peek(2) == kGzipMagic) {
        mInflated = std::make_unique<KCompressionDevice>(&mFile, false, KCompressionDevice::GZip);
        mInflated->open(QIODevice::ReadOnly);
        mXml.setDevice(mInflated.get());
    } else {
        mXml.setDevice(&mFile);
    }
    moveToRoot(root, expected);
}

void XmlInput::moveToRoot(const QString &root, const QString &expected) {
    mXml.readNextStartElement();
    check(expected);
    if (!root.isEmpty() && mXml.name() != root)
        fail(QStringLiteral("the root element is <%1>, not <%2>; give %3")
                 .arg(mXml.name().toString(), root, expected));
}

bool XmlInput::nextElement() {
    const bool found = mXml.readNextStartElement();
    check();
    return found;
}

void XmlInput::skipElement() {
    mXml.skipCurrentElement();
    check();
}

double XmlInput::progress() const {
    return mSize > 0 ? double(mFile.pos()) / double(mSize) : 1.0;
}

void XmlInput::fail(const QString &what) const {
    throw Failure(QStringLiteral("%1, line %2: %3").arg(path(), QString::number(line()), what));
}

void XmlInput::check(const QString &expected) const {
    if (mFile.error() != QFileDevice::NoError)
        fail(QStringLiteral("cannot be read (%1)").arg(mFile.errorString()));
    switch (mXml.error()) {
    case QXmlStreamReader::NoError:
        return;
    case QXmlStreamReader::PrematureEndOfDocumentError:
        if (mSize == 0)
            throw Failure(QStringLiteral("%1: the file is empty; give %2").arg(path(), expected));
        fail(QStringLiteral("the file ends in the middle; it was cut off, so copy it or write it again"));
    default:
        if (!expected.isEmpty())
            throw Failure(QStringLiteral("%1: this is not XML; give %2").arg(path(), expected));
        fail(QStringLiteral("not well-formed XML (%1); correct the file or write it again")
                 .arg(mXml.errorString()));
    }
}

QStringRef Attributes::required(const char *name) const {
    if (!has(name))
        mInput.fail(QStringLiteral("<%1> lacks the attribute \"%2\"; correct the file or write it again")
                        .arg(mElement, QLatin1String(name)));
    return mValues.value(QLatin1String(name));
}

void Attributes::failOn(const char *name, const QString &reason) const {
    mInput.fail(
        QStringLiteral("<%1> has %2=\"%3\", %4; correct the file or write it again")
            .arg(mElement, QLatin1String(name), mValues.value(QLatin1String(name)).toString(), reason));
}

QString Attributes::text(const char *name) const {
    return required(name).toString();
}

QString Attributes::text(const char *name, const QString &fallback) const {
    return has(name) ? mValues.value(QLatin1String(name)).toString() : fallback;
}

double Attributes::number(const char *name) const {
    double value = 0;
    if (!parseNumber(required(name), value))
        failOn(name, QStringLiteral("which is not a number"));
    return value;
}

double Attributes::number(const char *name, double fallback) const {
    return has(name) ? number(name) : fallback;
}

int Attributes::integer(const char *name) const {
    bool ok = false;
    const int value = required(name).toInt(&ok);
    if (!ok)
        failOn(name, QStringLiteral("which is not a whole number"));
    return value;
}

int Attributes::integer(const char *name, int fallback) const {
    return has(name) ? integer(name) : fallback;
}

bool Attributes::flag(const char *name, bool fallback) const {
    if (!has(name))
        return fallback;
    const QString value = text(name).toLower();
    if (value == QLatin1String("true") || value == QLatin1String("1") || value == QLatin1String("yes"))
        return true;
    if (value == QLatin1String("false") || value == QLatin1String("0") || value == QLatin1String("no"))
        return false;
    failOn(name, QStringLiteral("which is neither true nor false"));
}

double Attributes::seconds(const char *name, double fallback) const {
    if (!has(name))
        return fallback;
    const QVector<QStringRef> fields = required(name).split(QLatin1Char(':'));
    const bool negative = fields.first().startsWith(QLatin1Char('-'));
    double sum = 0;
    for (int i = 0; i < fields.size(); ++i) {
        double value = 0;
        if (fields.size() > 4 || fields.size() == 2 || !parseNumber(fields[i], value))
            failOn(name, QStringLiteral("which is neither seconds nor h:m:s"));
        const bool hoursOfDays = fields.size() == 4 && i == 1;
        sum = sum * (i == 0 ? 0 : hoursOfDays ? 24 : 60) + std::abs(value);
    }
    return negative ? -sum : sum;
}

Polyline Attributes::shape(const char *name) const {
    Polyline points;
    const QStringRef text = mValues.value(QLatin1String(name));
    for (int start = 0; start < text.size();) {
        int end = text.indexOf(QLatin1Char(' '), start);
        if (end < 0)
            end = text.size();
        if (end > start) {
            Point3 point;
            if (!parsePoint(text.mid(start, end - start), point))
                failOn(name, QStringLiteral("where \"%1\" is no point x,y or x,y,z")
                                 .arg(text.mid(start, end - start)));
            points.push_back(point);
        }
        start = end + 1;
    }
    return points;
}
