#include "model/GeometryJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

namespace {

/// What the library's own parser makes of a geometry.
QVector<GeometryPoint> pointsByLibrary(const QByteArray &text) {
    QVector<GeometryPoint> points;
    const QJsonArray data = QJsonDocument::fromJson(text).object().value(QStringLiteral("data")).toArray();
    for (const QJsonValue &point : data)
        points.append({point["x"].toDouble(), point["y"].toDouble(), point["z"].toDouble()});
    return points;
}

QByteArray textByLibrary(const QVector<GeometryPoint> &points) {
    QJsonArray data;
    for (const GeometryPoint &point : points)
        data.append(QJsonObject{{"x", point.x}, {"y", point.y}, {"z", point.z}});
    return QJsonDocument(QJsonObject{{"data", data}}).toJson(QJsonDocument::Compact);
}

/// Whether the text is JSON with points of three numbers each.
bool isGeometryByLibrary(const QByteArray &text) {
    const QJsonValue data = QJsonDocument::fromJson(text).object().value(QStringLiteral("data"));
    const QJsonArray points = data.toArray();
    return data.isArray() && std::all_of(points.begin(), points.end(), [](const QJsonValue &point) {
               return point["x"].isDouble() && point["y"].isDouble() && point["z"].isDouble();
           });
}

/// Equal to the sign of a zero.
bool isSame(double a, double b) {
    return a == b && std::signbit(a) == std::signbit(b);
}

bool isSame(const QVector<GeometryPoint> &a, const QVector<GeometryPoint> &b) {
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const GeometryPoint &p, const GeometryPoint &q) {
                          return isSame(p.x, q.x) && isSame(p.y, q.y) && isSame(p.z, q.z);
                      });
}

/// Doubles of every kind: any bit pattern, coordinates, whole numbers, powers and the limits of spelling.
double randomNumber(std::mt19937_64 &random) {
    const auto upTo = [&random](quint64 limit) { return random() % limit; };
    const double limits[] = {0.0,
                             -0.0,
                             5e-324,
                             1e-5,
                             1e-4,
                             1e-3,
                             1e15,
                             1e16,
                             9007199254740993.0,
                             0x1p63,
                             0x1p64,
                             1e20,
                             1e21,
                             1e22,
                             1.8e19,
                             1.7976931348623157e308};
    switch (upTo(7)) {
    case 0: {
        const quint64 bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    case 1:
        return double(qint64(random() >> upTo(64)));
    case 2:
        return std::uniform_real_distribution<>(-1e6, 1e6)(random);
    case 3:
        return std::round(std::uniform_real_distribution<>(-1e8, 1e8)(random)) / 100;
    case 4:
        return std::ldexp(double(upTo(1000003)) - 500000, int(upTo(140)) - 70);
    case 5:
        return std::pow(10.0, double(upTo(60)) - 30) * double(upTo(10));
    default:
        return limits[upTo(std::size(limits))] * (upTo(2) ? 1 : -1);
    }
}

QVector<GeometryPoint> randomLine(std::mt19937_64 &random) {
    QVector<GeometryPoint> line(int(random() % 4));
    for (GeometryPoint &point : line)
        point = {randomNumber(random), randomNumber(random), randomNumber(random)};
    return line;
}

TEST(GeometryJson, WritesTheBytesOfTheLibraryAndReadsThemBack) {
    std::mt19937_64 random(20261121);
    for (int i = 0; i < 50000; ++i) {
        const QVector<GeometryPoint> line = randomLine(random);
        const QByteArray text = geometryjson::fromPoints(line).text();
        ASSERT_EQ(text, textByLibrary(line));
        ASSERT_EQ(geometryjson::hasStoredForm(text), isGeometryByLibrary(text)) << text.constData();
        const QVector<GeometryPoint> read = geometryjson::points(StoredJson::fromText(text));
        ASSERT_TRUE(isSame(read, pointsByLibrary(text))) << text.constData();
        for (int k = 0; k < line.size(); ++k)
            ASSERT_TRUE(!std::isfinite(line[k].x) || read.at(k).x == line[k].x) << text.constData();
    }
}

TEST(GeometryJson, ReadsWhatTheLibraryReadsFromDamagedText) {
    std::mt19937_64 random(20261122);
    const char alphabet[] = "{}[]\":,xyz0123456789-+.eE \t\\u\xff\x80nul";
    for (int i = 0; i < 50000; ++i) {
        QByteArray text = geometryjson::fromPoints(randomLine(random)).text();
        for (quint64 changes = 1 + random() % 3; changes > 0; --changes) {
            const int at = int(random() % quint64(text.size() + 1));
            switch (random() % 4) {
            case 0:
                text.truncate(at);
                break;
            case 1:
                text.remove(at, 1);
                break;
            case 2:
                text.insert(at, alphabet[random() % (sizeof alphabet)]);
                break;
            default:
                text.insert(at, text.mid(int(random() % quint64(text.size() + 1)), int(random() % 12)));
            }
        }
        ASSERT_TRUE(isSame(geometryjson::points(StoredJson::fromText(text)), pointsByLibrary(text)))
            << text.constData();
        ASSERT_TRUE(!geometryjson::hasStoredForm(text) || isGeometryByLibrary(text)) << text.constData();
    }
}

TEST(GeometryJson, ReadsUnusualAndHostileText) {
    const auto point = [](const char *members) { return QByteArray("{\"data\":[{") + members + "}]}"; };
    const QByteArray texts[] = {
        point(R"("z":3,"y":2,"x":1)"),
        point(R"("x":1,"x":2,"y":3,"z":4)"),
        point(R"("x":1,"y":2)"),
        point(R"("\u0078":1,"y":2,"z":3)"),
        point(R"("x":01,"y":-,"z":1.)"),
        point(R"("x":.5,"y":2,"z":3)"),
        point(R"("x":1e999,"y":2,"z":3)"),
        point(R"("x":1e-999,"y":2,"z":3)"),
        point(R"("x":123456789012345678901234567890,"y":9223372036854775807,"z":9007199254740993)"),
        point(R"("x":inf,"y":nan,"z":null)"),
        point(R"("x":"1","y":[2],"z":{})"),
        "\xef\xbb\xbf{\"data\":[{\"x\":1,\"y\":2,\"z\":3}]}",
        "\n{ \"data\" : [ { \"x\" : 1.50, \"y\" : 2E+1, \"z\" : -0.0 } ] }\n",
        R"({"data":[{"x":1,"y":2,"z":3}],"more":1})",
        R"({"more":{"data":[]},"data":[{"x":1,"y":2,"z":3},null,[]]})",
        R"({"data":[{"x":1,"y":2,"z":3}]}x)",
        R"({"data":[{"x":1,"y":2,"z":3},]})",
        R"([{"data":[]}])",
        "{\"data\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}",
        point("\"x\":1,\"y\":2,\"z\":3,\"\xff\":4"),
        QByteArray("{\"data\":[]}\0", 12),
    };
    for (const QByteArray &text : texts)
        EXPECT_TRUE(isSame(geometryjson::points(StoredJson::fromText(text)), pointsByLibrary(text)))
            << text.left(100).constData();
}

} // namespace
