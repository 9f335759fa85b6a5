#include "tools/drawing/NetworkDrawing.h"
#include "tools/reports/Failure.h"
#include "tools/reports/OutputFile.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>

namespace moratools {

namespace {

/// SVG without what XML 1.0 forbids (https://www.w3.org/TR/xml/#charsets): control characters but for breaks,
/// U+FFFE and U+FFFF. QSvgGenerator writes texts with them as they are; no viewer opens such a picture.
QByteArray wellFormed(const QByteArray &svg) {
    const char *replacement = "\xef\xbf\xbd"; // U+FFFD in UTF-8
    QByteArray clean;
    clean.reserve(svg.size());
    for (int i = 0; i < svg.size(); ++i) {
        const auto byte = static_cast<unsigned char>(svg[i]);
        const bool isNoCharacter = byte == 0xef && i + 2 < svg.size() && svg[i + 1] == '\xbf' &&
                                   (svg[i + 2] == '\xbe' || svg[i + 2] == '\xbf');
        if (isNoCharacter)
            i += 2;
        if (isNoCharacter || (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r'))
            clean.append(replacement);
        else
            clean.append(svg[i]);
    }
    return clean;
}

QByteArray toSvg(const NetworkDrawing &drawing, const QSize &size, const QString &title) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setTitle(title);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    // One unit is one pixel, as on the screen.
    generator.setResolution(96);
    QPainter painter(&generator);
    drawing.paint(painter, size, true);
    painter.end();
    return wellFormed(buffer.data());
}

QByteArray toPng(const NetworkDrawing &drawing, const QSize &size) {
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        throw Failure(
            QStringLiteral("a picture of %1 x %2 pixels does not fit into memory; give a smaller size")
                .arg(QString::number(size.width()), QString::number(size.height())));
    QPainter painter(&image);
    drawing.paint(painter, size, false);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

bool isSvg(const QString &path) {
    return path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
}

} // namespace

void requirePicturePath(const QString &path) {
    if (path.isEmpty())
        throw Failure(QStringLiteral("the name of the picture is empty; give one that ends in .svg or .png"));
    if (!isSvg(path) && !path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        throw Failure(
            QStringLiteral("%1: a picture's name ends in .svg or .png; give one of these").arg(path));
    requireOutputPath(path, QStringLiteral("picture"));
}

QStringList drawToFile(const NetworkObjects &network, const QString &path, double longSide,
                       const std::vector<Marks> &marks) {
    requirePicturePath(path);
    const NetworkDrawing drawing(network, marks);
    const QSize size = drawing.sizeFor(longSide).toSize();
    const QByteArray bytes = isSvg(path) ? toSvg(drawing, size, network.record.name) : toPng(drawing, size);
    writeOutputFile(path, bytes);
    return drawing.leftOut();
}

} // namespace moratools
