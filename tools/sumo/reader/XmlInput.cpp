#include "tools/sumo/reader/XmlInput.h"

#include "tools/reports/Failure.h"
#include "tools/sumo/reader/AttributeCount.h"
#include "tools/sumo/reader/GzipDevice.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace moratools {

namespace {

constexpr char kGzipMagic[] = "\x1f\x8b";
constexpr qint64 kLongestToken = 16LL * 1024 * 1024; // bytes
// Kept elements become JSON, of which Qt reads 1024 levels: two for each element, and a few around them.
constexpr int kDeepestElement = 400;
constexpr int kMostAttributes = 1000; // SUMO's elements have some twenty
// QXmlStreamReader has a text for this error and no code.
constexpr char kMisencoded[] = "Encountered incorrectly encoded content.";

/// A finite number without a negative zero. A text that reads "-0.00" means zero.
bool parseNumber(const QStringRef &text, double &value) {
    bool ok = false;
    value = text.toDouble(&ok) + 0.0;
    return ok && std::isfinite(value);
}

bool parsePoint(const QStringRef &text, GeometryPoint &point) {
    const int firstComma = text.indexOf(QLatin1Char(','));
    if (firstComma < 0)
        return false;
    const int secondComma = text.indexOf(QLatin1Char(','), firstComma + 1);
    const int yEnd = secondComma < 0 ? text.size() : secondComma;
    return parseNumber(text.left(firstComma), point.x) &&
           parseNumber(text.mid(firstComma + 1, yEnd - firstComma - 1), point.y) &&
           (secondComma < 0 || parseNumber(text.mid(secondComma + 1), point.z));
}

/// The text as it stands in an attribute. Line ends and tabs are written out, since a parser takes those that
/// stand there for blanks.
void appendEscaped(QByteArray &to, const QStringRef &text) {
    int plain = 0;
    const auto isPlain = [](QChar c) {
        return c.unicode() >= ' ' && c.unicode() < 0x7f && c != QLatin1Char('<') && c != QLatin1Char('>') &&
               c != QLatin1Char('&') && c != QLatin1Char('"');
    };
    for (; plain < text.size() && isPlain(text[plain]); ++plain)
        to += text[plain].toLatin1();
    if (plain == text.size())
        return;
    const QByteArray bytes = text.mid(plain).toUtf8();
    for (const char byte : bytes) {
        switch (byte) {
        case '<':
            to += "&lt;";
            break;
        case '>':
            to += "&gt;";
            break;
        case '&':
            to += "&amp;";
            break;
        case '"':
            to += "&quot;";
            break;
        case '\n':
        case '\r':
        case '\t':
            to += "&#" + QByteArray::number(int(byte)) + ';';
            break;
        default:
            to += byte;
        }
    }
}

} // namespace

/// Hands the file on to the parser, which keeps a text in memory until it has all of it. Reading ends where a
/// text is longer than any that means something.
class XmlInput::Source : public QIODevice {
public:
    explicit Source(QIODevice &from) : mFrom(from) { open(QIODevice::ReadOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }
    void beginToken() {
        mSinceToken = 0;
        mAttributes.begin();
    }
    bool isOverLimit() const { return mIsOverLimit; }
    bool hasTooManyAttributes() const { return mAttributes.count() > kMostAttributes && mIsOverLimit; }
    void countComments() { mAttributes.countComments(); }

protected:
    qint64 readData(char *data, qint64 size) override {
        mIsOverLimit = mSinceToken > kLongestToken || mAttributes.count() > kMostAttributes;
        const qint64 got = mIsOverLimit ? -1 : mFrom.read(data, size);
        mSinceToken += std::max<qint64>(got, 0);
        mAttributes.take(data, std::max<qint64>(got, 0));
        return got;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice &mFrom;
    qint64 mSinceToken = 0;
    AttributeCount mAttributes;
    bool mIsOverLimit = false;
};

XmlInput::XmlInput(const QString &path, const QString &root, const QString &expected)
    : mFile(path), mExpected(expected) {
    const QFileInfo info(path);
    if (path.isEmpty())
        throw Failure(QStringLiteral("the name of a file is empty; give the path of %1").arg(expected));
    if (!info.exists())
        throw Failure(QStringLiteral("%1: no such file; give the path of %2").arg(path, expected));
    if (info.isDir())
        throw Failure(QStringLiteral("%1: this is a folder; give the path of %2").arg(path, expected));
    if (!mFile.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("%1: cannot be read (%2)").arg(path, mFile.errorString()));
    mSize = mFile.size();
    QIODevice *text = &mFile;
    if (mFile.peek(2) == kGzipMagic) {
        mInflated = std::make_unique<GzipDevice>(mFile);
        text = mInflated.get();
    }
    mSource = std::make_unique<Source>(*text);
    mXml.setDevice(mSource.get());
    nextElement();
    mHasRoot = true;
    if (!root.isEmpty() && mXml.name() != root)
        fail(QStringLiteral("the root element is <%1>, not <%2>; give %3")
                 .arg(mXml.name().toString(), root, expected));
}

XmlInput::~XmlInput() = default;

QXmlStreamReader::TokenType XmlInput::next() {
    mSource->beginToken();
    const QXmlStreamReader::TokenType token = mXml.readNext();
    check();
    if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::ProcessingInstruction || mXml.isCDATA())
        mSource->countComments();
    if (token == QXmlStreamReader::Characters && !mXml.isWhitespace())
        mText += mXml.text();
    if (token == QXmlStreamReader::StartElement) {
        ++mElements;
        mText.clear();
    }
    if (!mKeeping.empty())
        keepToken(token);
    if (token == QXmlStreamReader::StartElement && ++mDepth > kDeepestElement)
        fail(QStringLiteral("more than %1 elements are within each other; correct the file or write it again")
                 .arg(kDeepestElement));
    if (token == QXmlStreamReader::EndElement && --mDepth == 0) {
        // Comments may follow, and a checksum.
        while (!mXml.atEnd())
            next();
    }
    return token;
}

bool XmlInput::nextElement() {
    for (;;) {
        const QXmlStreamReader::TokenType token = next();
        if (token == QXmlStreamReader::StartElement)
            return true;
        if (token == QXmlStreamReader::EndElement || token == QXmlStreamReader::EndDocument)
            return false;
    }
}

void XmlInput::skipElement() {
    for (const int outside = mDepth - 1; mDepth > outside;)
        next();
}

KeptElement XmlInput::keepElement() {
    KeptElement element = head();
    while (nextElement())
        element.children.push_back(keepElement());
    return element;
}

KeptElement XmlInput::head() const {
    KeptElement element;
    element.name = name().toString();
    const QXmlStreamAttributes given = mXml.attributes();
    element.attributes.reserve(std::size_t(given.size()));
    for (const QXmlStreamAttribute &attribute : given)
        element.attributes.emplace_back(attribute.qualifiedName().toString(),
                                        attribute.value().trimmed().toString());
    return element;
}

void XmlInput::keepWhileRead(KeptElement &into) {
    into = head();
    mKeeping.push_back({&into});
}

void XmlInput::keepToken(QXmlStreamReader::TokenType token) {
    for (std::vector<KeptElement *> &open : mKeeping) {
        if (token == QXmlStreamReader::StartElement) {
            open.back()->children.push_back(head());
            open.push_back(&open.back()->children.back());
        } else if (token == QXmlStreamReader::EndElement) {
            open.pop_back();
        }
    }
    while (!mKeeping.empty() && mKeeping.back().empty())
        mKeeping.pop_back();
}

void XmlInput::keepText(QByteArray &text, const std::function<void()> &atChild, const QStringList &only) {
    keepTag(text, atChild, only);
    text += '\n';
}

void XmlInput::keepTag(QByteArray &text, const std::function<void()> &atChild, const QStringList &only) {
    const QByteArray tag = name().toUtf8();
    text += '<';
    text += tag;
    const QXmlStreamAttributes given = mXml.attributes();
    for (const QXmlStreamAttribute &attribute : given) {
        if (!only.isEmpty() && !only.contains(attribute.qualifiedName()))
            continue;
        text += ' ';
        appendEscaped(text, attribute.qualifiedName());
        text += "=\"";
        appendEscaped(text, attribute.value().trimmed());
        text += '"';
    }
    bool hasChildren = false;
    while (nextElement()) {
        if (!hasChildren)
            text += '>';
        hasChildren = true;
        if (atChild)
            atChild();
        keepTag(text, atChild, {});
    }
    if (hasChildren) {
        text += "</";
        text += tag;
        text += '>';
    } else {
        text += "/>";
    }
}

double XmlInput::progress() const {
    return mSize > 0 ? double(mFile.pos()) / double(mSize) : 1.0;
}

void XmlInput::fail(const QString &what) const {
    throw Failure(QStringLiteral("%1, line %2: %3").arg(path(), QString::number(line()), what));
}

void XmlInput::check() const {
    if (mFile.error() != QFileDevice::NoError)
        fail(QStringLiteral("cannot be read (%1)").arg(mFile.errorString()));
    if (mSource->hasTooManyAttributes())
        fail(QStringLiteral("an element has more than %1 attributes; correct the file or write it again")
                 .arg(kMostAttributes));
    if (mSource->isOverLimit())
        fail(QStringLiteral("a text is longer than %1 bytes; correct the file or write it again")
                 .arg(kLongestToken));
    if (mInflated && mInflated->fault() == GzipDevice::Fault::Damaged)
        throw Failure(QStringLiteral("%1: the compressed file is damaged, its checksum or its structure is "
                                     "wrong; copy it or write it again")
                          .arg(path()));
    if (mXml.hasError() || (mInflated && mInflated->fault() == GzipDevice::Fault::CutOff))
        refuse();
}

void XmlInput::refuse() const {
    const bool isCutOff = mInflated && mInflated->fault() == GzipDevice::Fault::CutOff;
    // A pipe or a device has no size, whatever comes from it.
    if (mSize == 0 && !mFile.isSequential())
        throw Failure(QStringLiteral("%1: the file is empty; give %2").arg(path(), mExpected));
    if (isCutOff || mXml.error() == QXmlStreamReader::PrematureEndOfDocumentError)
        fail(QStringLiteral("the file ends in the middle; it was cut off, so copy it or write it again"));
    if (mXml.errorString() == QCoreApplication::translate("QXmlStream", kMisencoded))
        fail(QStringLiteral("a character is not in the encoding that the file names, UTF-8 where it names "
                            "none; correct the file or write it again"));
    if (!mHasRoot)
        throw Failure(QStringLiteral("%1: this is not XML; give %2").arg(path(), mExpected));
    fail(QStringLiteral("not well-formed XML (%1); correct the file or write it again")
             .arg(mXml.errorString()));
}

QStringRef Attributes::required(const char *name) const {
    if (!has(name))
        mInput.fail(QStringLiteral("<%1> lacks the attribute \"%2\"; correct the file or write it again")
                        .arg(mElement, QLatin1String(name)));
    return mValues.value(QLatin1String(name)).trimmed();
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
    return has(name) ? text(name) : fallback;
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

std::optional<double> secondsOf(const QString &text) {
    const QVector<QStringRef> fields = text.splitRef(QLatin1Char(':'));
    const bool negative = text.startsWith(QLatin1Char('-'));
    double sum = 0;
    for (int i = 0; i < fields.size(); ++i) {
        double value = 0;
        if (fields.size() > 4 || fields.size() == 2 || !parseNumber(fields[i], value))
            return {};
        const bool hoursOfDays = fields.size() == 4 && i == 1;
        sum = sum * (i == 0 ? 0 : hoursOfDays ? 24 : 60) + std::abs(value);
    }
    return negative ? -sum : sum;
}

double Attributes::seconds(const char *name, double fallback) const {
    if (!has(name))
        return fallback;
    const std::optional<double> seconds = secondsOf(text(name));
    if (!seconds)
        failOn(name, QStringLiteral("which is neither seconds nor h:m:s"));
    return *seconds;
}

GeometryLine Attributes::shape(const char *name) const {
    GeometryLine points;
    const QStringRef text = mValues.value(QLatin1String(name));
    for (int start = 0; start < text.size();) {
        int end = text.indexOf(QLatin1Char(' '), start);
        if (end < 0)
            end = text.size();
        if (end > start) {
            GeometryPoint point;
            if (!parsePoint(text.mid(start, end - start), point))
                failOn(name, QStringLiteral("where \"%1\" is no point x,y or x,y,z")
                                 .arg(text.mid(start, end - start)));
            points.push_back(point);
        }
        start = end + 1;
    }
    return points;
}

} // namespace moratools
