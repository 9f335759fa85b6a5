#include "tools/sumo/kept/KeptElement.h"
#include "tools/sumo/kept/JunctionInside.h"
#include "tools/sumo/kept/Packed.h"

#include <QJsonDocument>
#include <QXmlStreamWriter>

#include <gtest/gtest.h>

using namespace moratools;

namespace {

QByteArray jsonOf(const KeptElement &element) {
    return QJsonDocument(element.toJson()).toJson(QJsonDocument::Compact);
}

TEST(KeptElement, IsTheSameInJsonAndXml) {
    const QByteArray json = R"(["vType",{"id":"car \"<&é"},[["param",{"key":"a","value":""}],["x"]]])";
    const KeptElement element = KeptElement::fromJson(QJsonDocument::fromJson(json).array());
    EXPECT_EQ(jsonOf(element), json);
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writeElement(writer, element);
    EXPECT_EQ(xml, QByteArray(R"(<vType id="car &quot;&lt;&amp;é"><param key="a" value=""/><x/></vType>)"));
}

TEST(KeptElement, OfAnotherFormHasNoName) {
    EXPECT_EQ(KeptElement::fromJson({}).name, QString());
    EXPECT_EQ(KeptElement::fromJson({QJsonArray{1}, 2, 3}).name, QString());
}

TEST(Packed, GivesBackWhatItTook) {
    const QByteArray text = QByteArray("<edge id=\":1_0\"/>\n").repeated(50) + '\0' + "é";
    EXPECT_EQ(unpacked(packed(text)), text);
    EXPECT_LT(packed(text).size(), 120);
    EXPECT_EQ(qUncompress(QByteArray::fromBase64(packed(text).toLatin1())), text);
}

TEST(Packed, DamagedOrHostileGivesNothing) {
    const QByteArray bytes = qCompress(QByteArray(1000, 'a'));
    const auto unpackedBytes = [](const QByteArray &of) {
        return unpacked(QString::fromLatin1(of.toBase64()));
    };
    EXPECT_TRUE(unpackedBytes(bytes.left(bytes.size() - 3)).isNull());
    EXPECT_TRUE(unpackedBytes(QByteArray("\x7f\xff\xff\xff", 4) + bytes.mid(4)).isNull());
    EXPECT_TRUE(
        unpackedBytes(QByteArray("\0\0\0\x0a", 4) + bytes.mid(4)).isNull()); // holds more than it says
    EXPECT_TRUE(unpackedBytes(QByteArray("\0\0\x03\xe9", 4) + bytes.mid(4)).isNull()); // holds less
    EXPECT_TRUE(unpacked(QStringLiteral("no base64")).isNull());
    EXPECT_TRUE(unpacked(QString()).isNull());
}

TEST(JunctionInside, PartsMayBeEmpty) {
    Packer packer;
    for (int empty = 0; empty < 16; ++empty) {
        const auto part = [&](int i) {
            return (empty >> i) & 1 ? QByteArray() : "x" + QByteArray::number(i) + "\ny\n";
        };
        const JunctionInside inside{part(0), part(1), part(2), part(3)};
        const JunctionInside again = JunctionInside::fromText(inside.toText(packer));
        EXPECT_EQ(again.edges, part(0));
        EXPECT_EQ(again.rightOfWay, part(1));
        EXPECT_EQ(again.junctions, part(2));
        EXPECT_EQ(again.connections, part(3));
    }
    EXPECT_EQ(JunctionInside::fromText(QStringLiteral("?")).edges, QByteArray());
}

} // namespace
