#include "store/bulk/JsonCheck.h"

#include <QJsonDocument>

#include <cstring>

namespace {

/// Recognises plain JSON in one pass. It takes nothing that the library parser refuses; what it does not take
/// (deep nesting, escapes beyond one character, stray bytes, huge numbers) is for that parser to judge.
class Scanner {
public:
    explicit Scanner(const QByteArray &text) : mAt(text.constData()), mEnd(mAt + text.size()) {}

    bool isObject() {
        skipSpace();
        if (mAt == mEnd || *mAt != '{' || !value(0))
            return false;
        skipSpace();
        return mAt == mEnd;
    }

private:
    static constexpr int kDepth = 64;
    static constexpr int kLongestNumber = 40;

    // The text is a QByteArray: a zero byte ends it, so that looking at *mAt is safe at the end, too.
    void skipSpace() {
        while (*mAt == ' ' || *mAt == '\n' || *mAt == '\t' || *mAt == '\r')
            ++mAt;
    }
    bool take(char c) {
        skipSpace();
        if (*mAt != c)
            return false;
        ++mAt;
        return true;
    }
    bool word(const char *text) {
        for (; *text != 0; ++text, ++mAt) {
            if (*mAt != *text)
                return false;
        }
        return true;
    }

    bool value(int depth) {
        skipSpace();
        switch (*mAt) {
        case '{':
            return depth < kDepth && members(depth + 1);
        case '[':
            return depth < kDepth && elements(depth + 1);
        case '"':
            return string();
        case 't':
            return word("true");
        case 'f':
            return word("false");
        case 'n':
            return word("null");
        default:
            return number();
        }
    }
    bool members(int depth) {
        ++mAt;
        if (take('}'))
            return true;
        do {
            skipSpace();
            if (!string() || !take(':') || !value(depth))
                return false;
        } while (take(','));
        return take('}');
    }
    bool elements(int depth) {
        ++mAt;
        if (take(']'))
            return true;
        do {
            if (!value(depth))
                return false;
        } while (take(','));
        return take(']');
    }

    bool string() {
        if (*mAt != '"')
            return false;
        for (++mAt; *mAt != '"'; ++mAt) {
            const auto byte = static_cast<unsigned char>(*mAt);
            if (byte < 0x20 || (byte >= 0x80 && !restOfCharacter(byte)))
                return false;
            if (byte == '\\' && (*++mAt == 0 || !std::strchr("\"\\/bfnrt", *mAt)))
                return false;
        }
        ++mAt;
        return true;
    }
    /// The bytes that follow the first one of a character beyond ASCII. The ranges are those of well-formed
    /// UTF-8: https://www.unicode.org/versions/Unicode15.0.0/ch03.pdf, table 3-7.
    bool restOfCharacter(unsigned char first) {
        if (first < 0xc2 || first > 0xf4)
            return false;
        unsigned char low = 0x80;
        unsigned char high = 0xbf;
        if (first == 0xe0)
            low = 0xa0;
        else if (first == 0xed)
            high = 0x9f;
        else if (first == 0xf0)
            low = 0x90;
        else if (first == 0xf4)
            high = 0x8f;
        for (int more = first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3; more > 0; --more) {
            const auto byte = static_cast<unsigned char>(*++mAt);
            if (byte < low || byte > high)
                return false;
            low = 0x80;
            high = 0xbf;
        }
        return true;
    }

    bool digits() {
        const char *first = mAt;
        while (*mAt >= '0' && *mAt <= '9')
            ++mAt;
        return mAt != first;
    }
    /// Numbers that a double may not hold are for the parser to judge.
    bool number() {
        const char *first = mAt;
        if (*mAt == '-')
            ++mAt;
        if (*mAt == '0')
            ++mAt;
        else if (!digits())
            return false;
        if (*mAt == '.' && (++mAt, !digits()))
            return false;
        if (mAt - first > kLongestNumber)
            return false;
        if (*mAt == 'e' || *mAt == 'E') {
            ++mAt;
            if (*mAt == '+' || *mAt == '-')
                ++mAt;
            const char *exponent = mAt;
            return digits() && mAt - exponent <= 2;
        }
        return true;
    }

    const char *mAt;
    const char *mEnd;
};

} // namespace

bool isJsonObject(const QByteArray &text) {
    return Scanner(text).isObject() || QJsonDocument::fromJson(text).isObject();
}
