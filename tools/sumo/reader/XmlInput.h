#pragma once

#include "model/GeometryLine.h"
#include "tools/sumo/kept/KeptElement.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace moratools {

class GzipDevice;

/// An XML file read as a stream, plain or compressed with gzip (told by its first bytes, not by its name).
/// Every fault throws a `Failure` that names the file, the line and what to do. What a few bytes can stand
/// for has limits: 16 MiB for a text, a tag or a comment, and 400 elements within each other.
class XmlInput {
public:
    /// Opens `path` and moves to the root element, which must be called `root` (empty: any name will do);
    /// `expected` says in words what kind of file is wanted ("a SUMO network (.net.xml or .net.xml.gz)").
    XmlInput(const QString &path, const QString &root, const QString &expected);

    ~XmlInput();

    /// Moves to the next child of the current element. False at the element's end; after that of the root the
    /// file has been read to its end, and holds nothing more.
    bool nextElement();
    void skipElement();
    /// Reads the current element to its end and gives it as it stands, without blanks around values.
    KeptElement keepElement();
    /// Lets the current element be kept while others read it: `into` has all of it as soon as its end has been
    /// read, and must stay where it is until then.
    void keepWhileRead(KeptElement &into);
    /// Reads the current element to its end and appends it to `text` in one line, as keepElement() has it.
    /// `atChild` is called at the start of every element within it and reads no further. Where `only` names
    /// attributes, others of the element itself are passed over.
    void keepText(QByteArray &text, const std::function<void()> &atChild = {}, const QStringList &only = {});
    QStringRef name() const { return mXml.name(); }
    QXmlStreamAttributes attributes() const { return mXml.attributes(); }
    qint64 line() const { return mXml.lineNumber(); }
    /// What has been read of the text of the element that was begun last.
    QString text() const { return mText.trimmed(); }
    /// The running number of the element that was begun last, from 0 for the root, whoever read those before.
    qint64 elementNumber() const { return mElements - 1; }
    QString path() const { return mFile.fileName(); }

    /// How much of the file has been read, 0 to 1.
    double progress() const;

    /// Throws: "PATH, line N: WHAT".
    [[noreturn]] void fail(const QString &what) const;

private:
    class Source;
    void keepTag(QByteArray &text, const std::function<void()> &atChild, const QStringList &only);

    QXmlStreamReader::TokenType next();
    KeptElement head() const;
    void keepToken(QXmlStreamReader::TokenType token);
    void check() const;
    [[noreturn]] void refuse() const;

    QFile mFile;
    std::unique_ptr<GzipDevice> mInflated;
    std::unique_ptr<Source> mSource;
    QXmlStreamReader mXml;
    QString mExpected;
    qint64 mSize = 0;
    int mDepth = 0; ///< of elements that are open
    QString mText;
    /// For each element that is kept while it is read those that are open, from it inwards.
    std::vector<std::vector<KeptElement *>> mKeeping;
    qint64 mElements = 0;
    bool mHasRoot = false;
};

/// Seconds, given as a number or as h:m:s (with days before: d:h:m:s); none for another text.
std::optional<double> secondsOf(const QString &text);

/// The attributes of the current element of an `XmlInput`, read with their types. Blanks around a value are not
/// part of it: files that were written by hand have them around ids.
class Attributes {
public:
    explicit Attributes(const XmlInput &input)
        : mInput(input), mElement(input.name().toString()), mValues(input.attributes()) {}

    bool has(const char *name) const { return mValues.hasAttribute(QLatin1String(name)); }
    QString text(const char *name) const;
    QString text(const char *name, const QString &fallback) const;
    double number(const char *name) const;
    double number(const char *name, double fallback) const;
    int integer(const char *name) const;
    int integer(const char *name, int fallback) const;
    bool flag(const char *name, bool fallback) const;
    /// Seconds, as secondsOf() reads them.
    double seconds(const char *name, double fallback) const;
    /// Points "x,y" or "x,y,z" separated by blanks; a missing attribute gives no points.
    GeometryLine shape(const char *name) const;
    [[noreturn]] void failOn(const char *name, const QString &reason) const;

private:
    QStringRef required(const char *name) const;

    const XmlInput &mInput;
    QString mElement;
    QXmlStreamAttributes mValues;
};

} // namespace moratools
