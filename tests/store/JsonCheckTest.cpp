#include "store/bulk/JsonCheck.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

#include <random>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

/// Texts of every kind of value, and the places where the scanner's rules and the parser's could part.
const QByteArray kTexts[] = {
    R"({"a":[1,-0.5e+3,0,true,false,null,"\"\\\/\b\f\n\r\t\u00e9é道😀"],"b":{"c":{}},"":[]})",
    R"( { "data" : [ { "x" : 1.25 , "y" : -2E5 , "z" : 0 } ] } )",
    R"({"a":01})",
    R"({"a":.5})",
    R"({"a":1.})",
    R"({"a":-})",
    R"({"a":1e})",
    R"({"a":1e999})",
    R"({"a":-1e-99999})",
    "{\"a\":" + QByteArray(400, '9') + "}",
    R"({"a":tru})",
    R"({"a":1,})",
    R"({,})",
    R"({"a" 1})",
    R"({a:1})",
    R"({"a":1}})",
    R"({"a":"\ud800"})",
    R"({"a":"\x41"})",
    R"({"a":nan})",
    "{\"a\":\"\xed\xa0\x80\"}",
    "{\"a\":\"\xf4\x90\x80\x80\"}",
    "{\"a\":\"\xc0\xaf\"}",
    "{\"a\":\"\xef\xbf\xbf\"}",
    "{\"a\":\"\t\"}",
    "\xef\xbb\xbf{}",
    QByteArray("{\"a\0\":1}", 8),
    QByteArray("{}\0", 3),
    "{\"a\":" + QByteArray(600, '[') + QByteArray(600, ']') + "}",
    "[]",
    "1",
    "",
};

bool parses(const QByteArray &text) {
    return QJsonDocument::fromJson(text).isObject();
}

TEST(JsonCheck, JudgesAsTheParserDoes) {
#ifdef __SANITIZE_ADDRESS__
    // Qt's parser loses memory over some damaged texts.
    const __lsan::ScopedDisabler lost;
#endif
    std::mt19937_64 random(20261123);
    const char alphabet[] = "{}[]\":,\\u019-+.eE \n\xc3\xa9\xed\xf0\x80truefalsn";
    int refused = 0;
    for (const QByteArray &text : kTexts) {
        ASSERT_EQ(isJsonObject(text), parses(text)) << text.constData();
        for (int i = 0; i < 5000; ++i) {
            QByteArray damaged = text;
            for (quint64 changes = 1 + random() % 3; changes > 0; --changes) {
                const int at = int(random() % quint64(damaged.size() + 1));
                if (random() % 2)
                    damaged.remove(at, 1 + int(random() % 3));
                else
                    damaged.insert(at, alphabet[random() % sizeof alphabet]);
            }
            ASSERT_EQ(isJsonObject(damaged), parses(damaged)) << damaged.constData();
            refused += !parses(damaged);
        }
    }
    EXPECT_GT(refused, 1000);
}

} // namespace
