// A window on a store: links, lanes and connectors. Drag to move, turn the wheel to zoom, click for an object's fields.
//   viewer STORE [--click X,Y] [--picture FILE.png]
// --click does as a click on that place, in metres; --picture writes what the window shows, and ends.
#include <MoraStore/DBTools.h>
#include <MoraStore/Description.h>
#include <MoraStore/GeometryJson.h>
#include <MoraStore/GeometryLine.h>
#include <MoraStore/NetContents.h>
#include <MoraStore/OpenStore.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDockWidget>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QJsonDocument>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextStream>
#include <QWheelEvent>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

QPolygonF polygonOf(const GeometryLine &line) {
    QPolygonF polygon;
    for (const GeometryPoint &point : line)
        polygon.append({point.x, point.y});
    return polygon;
}

// What lies between the edges of a lane or of a connector.
template <class Band>
QPolygonF areaOf(const Band &band) {
    QPolygonF right = polygonOf(geometryjson::points(band.rightBreakPointsJson));
    std::reverse(right.begin(), right.end());
    return polygonOf(geometryjson::points(band.leftBreakPointsJson)) + right;
}

// A path without a shape of its own leads from lane to lane: stores that single inserts wrote have no shapes.
GeometryLine lineOf(const LaneConnector &path) {
    const GeometryLine line = geometryjson::points(path.centerLinePointsJson);
    return line.size() > 1 ? line
                           : geometry::turn(geometryjson::points(path.mpStartLane->centerLinePointsJson),
                                            geometryjson::points(path.mpEndLane->centerLinePointsJson));
}

// A network is drawn with y upwards, as its coordinates are meant.
class Plan : public QGraphicsView {
public:
    Plan(const NetContents &net, std::function<void(const Description &)> show) : mShow(std::move(show)) {
        for (const auto &link : net.links) {
            for (const Lane *lane : link->mlLane)
                add(*link, areaOf(*lane), QColor(0x8b, 0x93, 0x9e), QPen(Qt::white, 0.2));
        }
        for (const auto &connector : net.connectors) {
            add(*connector, areaOf(*connector), QColor(0xc5, 0xcb, 0xd3), Qt::NoPen);
            for (const LaneConnector *path : connector->mlLaneConnector) {
                QPainterPath line;
                line.addPolygon(polygonOf(lineOf(*path)));
                mScene.addPath(line, QPen(QColor(0x3d, 0x6e, 0xa5), 0.3))->setZValue(2);
            }
        }
        setScene(&mScene);
        scale(1, -1);
        setRenderHint(QPainter::Antialiasing);
        setDragMode(ScrollHandDrag);
        setTransformationAnchor(AnchorUnderMouse);
    }

    void showAll() { fitInView(mScene.itemsBoundingRect().adjusted(-5, -5, 5, 5), Qt::KeepAspectRatio); }
    void clickAt(const QPointF &metres) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, mapFromScene(metres), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(viewport(), &event);
        }
    }

protected:
    void wheelEvent(QWheelEvent *event) override {
        const double factor = event->angleDelta().y() > 0 ? 1.25 : 0.8;
        scale(factor, factor);
    }
    void mousePressEvent(QMouseEvent *event) override {
        for (QGraphicsItem *item : items(event->pos())) {
            if (const auto chosen = mDescribe.constFind(item); chosen != mDescribe.constEnd()) {
                mShow((*chosen)());
                mark(item);
                break;
            }
        }
        QGraphicsView::mousePressEvent(event);
    }

private:
    template <class Object>
    void add(const Object &object, const QPolygonF &area, const QColor &colour, const QPen &pen) {
        mDescribe.insert(mScene.addPolygon(area, pen, colour), [&object] { return describe(object); });
    }
    void mark(const QGraphicsItem *item) {
        delete mMark;
        mMark = mScene.addPolygon(static_cast<const QGraphicsPolygonItem *>(item)->polygon(), QPen(Qt::NoPen),
                                  QColor(0xe8, 0x6a, 0x17));
        mMark->setZValue(1);
    }

    QGraphicsScene mScene;
    QHash<const QGraphicsItem *, std::function<Description()>> mDescribe;
    std::function<void(const Description &)> mShow;
    QGraphicsItem *mMark = nullptr;
};

int fail(const QString &why) {
    QTextStream(stderr) << why << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[]) {
    const QApplication app(argc, argv);
    QCommandLineParser arguments;
    arguments.addPositionalArgument(QStringLiteral("STORE"), {});
    arguments.addOptions({{QStringLiteral("click"), {}, QStringLiteral("X,Y")},
                          {QStringLiteral("picture"), {}, QStringLiteral("FILE")}});
    arguments.process(app);
    const QString path = arguments.positionalArguments().value(0);

    OpenStore store(path, OpenStore::Access::Read);
    NetContents net;
    if (!store.isOpen())
        return fail(store.failures().isEmpty() ? QStringLiteral("Usage: viewer STORE")
                                               : store.failures().last().error);
    if (!DBTools::selectNetIdByName(store.db(), {}))
        return fail(path + QStringLiteral(" holds no network."));
    if (!DBTools::loadNet(store.db(), store.net().netId, net))
        return fail(store.failures().last().error);

    QMainWindow window;
    QDockWidget side(QStringLiteral("Fields"));
    QPlainTextEdit fields;
    fields.setReadOnly(true);
    Plan plan(net, [&fields](const Description &object) {
        fields.setPlainText(QString::fromUtf8(QJsonDocument(object.toJson()).toJson()));
    });
    side.setWidget(&fields);
    window.addDockWidget(Qt::RightDockWidgetArea, &side);
    window.setCentralWidget(&plan);
    window.setWindowTitle(net.record.name);
    window.resize(1100, 700);
    window.show();
    plan.showAll();
    const QStringList place = arguments.value(QStringLiteral("click")).split(QLatin1Char(','));
    if (place.size() == 2)
        plan.clickAt({place[0].toDouble(), place[1].toDouble()});
    if (!arguments.isSet(QStringLiteral("picture")))
        return QApplication::exec();
    QApplication::processEvents();
    const QString picture = arguments.value(QStringLiteral("picture"));
    return window.grab().save(picture) ? 0 : fail(picture + QStringLiteral(" cannot be written."));
}
