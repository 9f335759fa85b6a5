#include "tools/sumo/reader/AttributeCount.h"

namespace moratools {

namespace {

constexpr quint32 kCommentStarts = 0x3c212d2d; // <!--
constexpr quint32 kCommentEnds = 0x2d2d3e;     // -->

} // namespace

void AttributeCount::take(const char *bytes, qint64 size) {
    for (const char *at = bytes; at != bytes + size; ++at) {
        // A wider encoding, whose characters may have bytes that look like others.
        if (*at == 0) {
            countComments();
            continue;
        }
        const bool repeats = (mLast & 0xff) == '=';
        mLast = mLast << 8 | static_cast<unsigned char>(*at);
        if (mIsInComment)
            mIsInComment = (mLast & 0xffffff) != kCommentEnds;
        else if (mTellsComments && mLast == kCommentStarts)
            mIsInComment = true;
        else if (*at == '=' && !repeats)
            ++mCount;
    }
}

} // namespace moratools
