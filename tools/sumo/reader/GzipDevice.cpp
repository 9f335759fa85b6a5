#include "tools/sumo/reader/GzipDevice.h"

#include <algorithm>
#include <limits>
#include <new>

namespace moratools {

namespace {

constexpr int kInputSize = 64 * 1024;
// The largest window, and 16 for a gzip header with checksum: https://zlib.net/manual.html#Advanced.
constexpr int kGzip = MAX_WBITS + 16;

} // namespace

GzipDevice::GzipDevice(QIODevice &compressed) : mCompressed(compressed) {
    if (inflateInit2(&mStream, kGzip) != Z_OK)
        throw std::bad_alloc();
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

GzipDevice::~GzipDevice() {
    inflateEnd(&mStream);
}

bool GzipDevice::fetch() {
    if (mStream.avail_in > 0)
        return true;
    mInput = mCompressed.read(kInputSize);
    mStream.next_in = reinterpret_cast<Bytef *>(mInput.data());
    mStream.avail_in = uInt(mInput.size());
    return !mInput.isEmpty();
}

void GzipDevice::beginPart() {
    mIsAtEnd = !fetch();
    if (!mIsAtEnd)
        inflateReset(&mStream);
}

qint64 GzipDevice::readData(char *data, qint64 size) {
    const auto wanted = uInt(std::min<qint64>(size, std::numeric_limits<int>::max()));
    mStream.next_out = reinterpret_cast<Bytef *>(data);
    mStream.avail_out = wanted;
    while (mStream.avail_out > 0 && !mIsAtEnd && mFault == Fault::None) {
        if (!fetch()) {
            mFault = Fault::CutOff;
            break;
        }
        const int result = inflate(&mStream, Z_NO_FLUSH);
        if (result == Z_STREAM_END)
            beginPart();
        else if (result != Z_OK)
            mFault = Fault::Damaged;
    }
    const qint64 got = wanted - mStream.avail_out;
    return got > 0 ? got : -1;
}

} // namespace moratools
