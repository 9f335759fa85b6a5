#pragma once

#include <QByteArray>

#include <memory>

namespace moratools {

/// SHA-256 (FIPS 180-4) of bytes that come piece by piece.
class Sha256 {
public:
    Sha256();
    ~Sha256();

    void add(const QByteArray &bytes);
    /// Of all that was added, hexadecimal. Asked once.
    QString result();

private:
    Q_DISABLE_COPY(Sha256)

    struct Engine;
    std::unique_ptr<Engine> mEngine;
};

} // namespace moratools
