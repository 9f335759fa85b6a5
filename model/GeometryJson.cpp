#include "GeometryJson.h"

#include <QJsonArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Reads the stored form and nothing else: what it refuses may still be valid JSON.
class Reader {
public:
    explicit Reader(const QByteArray &text) : mAt(text.constData()), mEnd(mAt + text.size()) {}

    bool read(GeometryLine &points) {
        if (!skip("{\"data\":["))
            return false;
        // A point takes about 60 bytes with full precision.
        points.reserve(int((mEnd - mAt) / 48) + 1);
        while (skip("{\"x\":")) {
            GeometryPoint point;
            if (!number(point.x) || !skip(",\"y\":") || !number(point.y) || !skip(",\"z\":") ||
                !number(point.z) || !skip("}"))
                return false;
            points.append(point);
            if (!skip(","))
                return skip("]}") && mAt == mEnd;
        }
        return points.isEmpty() && skip("]}") && mAt == mEnd;
    }

private:
    template <std::size_t Size>
    bool skip(const char (&text)[Size]) {
        constexpr std::size_t length = Size - 1;
        if (std::size_t(mEnd - mAt) < length || std::memcmp(mAt, text, length) != 0)
            return false;
        mAt += length;
        return true;
    }

    /// std::from_chars() takes more than JSON does: leading zeros, no digit before or after the point, inf.
    bool number(double &value) {
        const char *digits = mAt + (mAt != mEnd && *mAt == '-');
        if (digits == mEnd || !isDigit(*digits) ||
            (*digits == '0' && digits + 1 != mEnd && isDigit(digits[1])))
            return false;
        const auto [end, error] = std::from_chars(mAt, mEnd, value);
        if (error != std::errc() || !isDigit(end[-1]))
            return false;
        mAt = end;
        return true;
    }

    const char *mAt;
    const char *mEnd;
};

GeometryLine pointsOf(const QJsonObject &object) {
    GeometryLine points;
    const QJsonArray data = object.value(QLatin1String("data")).toArray();
    points.reserve(data.size());
    for (const QJsonValue &value : data) {
        const QJsonObject point = value.toObject();
        points.append({point.value(QLatin1String("x")).toDouble(), point.value(QLatin1String("y")).toDouble(),
                       point.value(QLatin1String("z")).toDouble()});
    }
    return points;
}

QJsonObject objectOf(const GeometryLine &points) {
    QJsonArray data;
    for (const GeometryPoint &point : points)
        data.append(QJsonObject{
            {QStringLiteral("x"), point.x}, {QStringLiteral("y"), point.y}, {QStringLiteral("z"), point.z}});
    return {{QStringLiteral("data"), data}};
}

/// The longest number has 17 digits, a sign, a point and an exponent of five characters.
constexpr int kLongestNumber = 24;

char *write(char *to, const char *text) {
    const std::size_t length = std::strlen(text);
    return std::copy_n(text, length, to);
}

char *write(char *to, double value) {
    const double size = std::abs(value);
    const bool isInteger = size < 1e15 && value == std::trunc(value);
    if (isInteger)
        return std::to_chars(to, to + kLongestNumber, qint64(value)).ptr;
    // Between these bounds std::to_chars() and Qt spell the shortest digits alike, without an exponent.
    if (size >= 1e-3 && size < 1e15)
        return std::to_chars(to, to + kLongestNumber, value).ptr;
    // As QJsonDocument does: whole numbers that 64 bits hold are written without an exponent.
    const bool isWhole = size < 18446744073709551616.0 && size == std::trunc(size);
    return write(to,
                 QByteArray::number(value, isWhole ? 'f' : 'g', QLocale::FloatingPointShortest).constData());
}

} // namespace

namespace geometryjson {

GeometryLine points(const StoredJson &geometry) {
    GeometryLine read;
    if (geometry.hasText() && Reader(geometry.text()).read(read))
        return read;
    return pointsOf(geometry.object());
}

bool hasStoredForm(const QByteArray &text) {
    GeometryLine points;
    return Reader(text).read(points);
}

StoredJson fromPoints(const GeometryLine &points) {
    if (!geometry::isFinite(points))
        return StoredJson(objectOf(points));
    constexpr int longestPoint = 18 + 3 * kLongestNumber;
    QByteArray text(16 + longestPoint * points.size(), Qt::Uninitialized);
    char *end = write(text.data(), "{\"data\":[");
    const char *before = "{\"x\":";
    for (const GeometryPoint &point : points) {
        end = write(end, before);
        end = write(end, point.x);
        end = write(end, ",\"y\":");
        end = write(end, point.y);
        end = write(end, ",\"z\":");
        end = write(end, point.z);
        end = write(end, "}");
        before = ",{\"x\":";
    }
    end = write(end, "]}");
    text.resize(int(end - text.constData()));
    text.squeeze();
    return StoredJson::fromText(text);
}

} // namespace geometryjson
