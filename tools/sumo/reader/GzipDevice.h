#pragma once

#include <QByteArray>
#include <QIODevice>

#include <zlib.h>

namespace moratools {

/// The contents of a file that was compressed with gzip, read as a stream. Several parts one after the other
/// are read as one.
class GzipDevice : public QIODevice {
public:
    /// What is wrong with the file.
    enum class Fault {
        None,
        CutOff, ///< it ends before its contents do
        Damaged ///< it is no gzip file any more, or its checksum is another
    };

    /// `compressed` must be open for reading and outlive this object. Opens this device.
    explicit GzipDevice(QIODevice &compressed);
    ~GzipDevice() override;

    bool isSequential() const override { return true; }
    /// None until the fault is met; reading ends there.
    Fault fault() const { return mFault; }

protected:
    qint64 readData(char *data, qint64 size) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    Q_DISABLE_COPY(GzipDevice)

    bool fetch();
    /// A part of the file is complete: goes on with the next, if there is one.
    void beginPart();

    QIODevice &mCompressed;
    QByteArray mInput;
    z_stream mStream = {};
    bool mIsAtEnd = false;
    Fault mFault = Fault::None;
};

} // namespace moratools
