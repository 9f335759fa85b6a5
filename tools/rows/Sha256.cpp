#include "tools/rows/Sha256.h"

#include <QString>

#ifdef MORATOOLS_WITH_OPENSSL
#include <openssl/evp.h>
#else
#include <QCryptographicHash>
#endif

namespace moratools {

#ifdef MORATOOLS_WITH_OPENSSL

/// It uses the processor's own instructions, which Qt's does not: a tenth of the time.
struct Sha256::Engine {
    struct Free {
        void operator()(EVP_MD_CTX *context) const { EVP_MD_CTX_free(context); }
    };

    Engine() : context(EVP_MD_CTX_new()) { EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr); }
    void add(const QByteArray &bytes) {
        EVP_DigestUpdate(context.get(), bytes.constData(), std::size_t(bytes.size()));
    }
    QByteArray result() {
        QByteArray digest(EVP_MAX_MD_SIZE, '\0');
        unsigned size = 0;
        EVP_DigestFinal_ex(context.get(), reinterpret_cast<unsigned char *>(digest.data()), &size);
        return digest.left(int(size));
    }

    std::unique_ptr<EVP_MD_CTX, Free> context;
};

#else

struct Sha256::Engine {
    void add(const QByteArray &bytes) { hash.addData(bytes); }
    QByteArray result() { return hash.result(); }

    QCryptographicHash hash{QCryptographicHash::Sha256};
};

#endif

Sha256::Sha256() : mEngine(std::make_unique<Engine>()) {}

Sha256::~Sha256() = default;

void Sha256::add(const QByteArray &bytes) {
    mEngine->add(bytes);
}

QString Sha256::result() {
    return QString::fromLatin1(mEngine->result().toHex());
}

} // namespace moratools
