#pragma once

#include <QtGlobal>

namespace moratools {

/// Counts the attributes of an element from its bytes, before the parser has all of it: QXmlStreamReader
/// compares each with all before it, so that an element with very many takes minutes. There are at least as
/// many equals signs as attributes; those of comments do not count, since whole networks are commented out.
class AttributeCount {
public:
    /// The parser asks for what follows the bytes that were taken.
    void begin() { mCount = 0; }
    void take(const char *bytes, qint64 size);
    int count() const { return mCount; }

    /// From here on comments count, too: there was something whose content may look like the start of one.
    void countComments() { mTellsComments = mIsInComment = false; }

private:
    int mCount = 0;
    bool mTellsComments = true;
    bool mIsInComment = false;
    quint32 mLast = 0; ///< the last four bytes
};

} // namespace moratools
