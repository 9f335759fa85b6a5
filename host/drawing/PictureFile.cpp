#include "host/Failure.h"
#include "host/drawing/NetworkDrawing.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace {

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
    return buffer.data();
}

QByteArray toPng(const NetworkDrawing &drawing, const QSize &size) {
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        throw Failure(
            QStringLiteral("a picture of %1 x %2 pixels does not fit into memory; give a smaller --size")
                .arg(QString::number(size.width()), QString::number(size.height())));
    QPainter painter(&image);
    drawing.paint(painter, size, false);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

} // namespace

void drawToFile(const NetworkObjects &network, const QString &path, double longSide) {
    const bool svg = path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
    if (!svg && !path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        throw Failure(
            QStringLiteral("%1: a picture's name ends in .svg or .png; give one of these").arg(path));
    const NetworkDrawing drawing(network);
    const QSize size = drawing.sizeFor(longSide).toSize();
    const QByteArray bytes = svg ? toSvg(drawing, size, network.record.name) : toPng(drawing, size);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw Failure(QStringLiteral("%1: cannot be written (%2)").arg(path, file.errorString()));
}
