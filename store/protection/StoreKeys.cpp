#include "store/protection/StoreKeys.h"

#include "store/protection/Refusal.h"

#include <MoraInterfaces/MoraInterfaces.h>

#include <QJsonObject>

namespace storekeys {

namespace {

// Random bytes. Protected files depend on them.
constexpr unsigned char kLibrary1[crypto_generichash_KEYBYTES] = {
    0x4d, 0x3d, 0x61, 0x5b, 0x00, 0x74, 0x7e, 0xbe, 0xbf, 0x49, 0x38, 0x64, 0xe0, 0x83, 0xe6, 0xbd,
    0x8d, 0x3b, 0x79, 0x31, 0x8e, 0x81, 0x3c, 0xce, 0x0a, 0x8c, 0x5b, 0x26, 0x7a, 0x1d, 0xe5, 0x4c};
constexpr unsigned char kLibrary2[crypto_generichash_KEYBYTES] = {
    0x6a, 0x61, 0x12, 0x94, 0xdf, 0x9c, 0xf1, 0x2e, 0xe4, 0xeb, 0x96, 0xad, 0xe0, 0x36, 0x4b, 0x4a,
    0xa4, 0x9f, 0x02, 0x1d, 0xab, 0x71, 0xc8, 0xb0, 0xa9, 0x5d, 0xad, 0xb1, 0x28, 0x9a, 0x54, 0x29};

// Part of the format: written out, as the names of the library's own levels may change their meaning.
constexpr unsigned long long kPasses = 2;
constexpr std::size_t kMemory = 64UL * 1024 * 1024;

QJsonValue hostText() {
    return gpMoraInterface ? gpMoraInterface->jsonSettings().value(QLatin1String("__storekey"))
                           : QJsonValue();
}

void deriveOfLibrary(const unsigned char (&key)[crypto_generichash_KEYBYTES], const Salt &salt,
                     Secret<kFileKeyBytes> &fileKey) {
    crypto_generichash(fileKey.data(), fileKey.size(), salt.data(), salt.size(), key, sizeof key);
}

/// What the host still holds is shared, and the host's to wipe.
void wipe(QString &text) {
    if (text.isDetached())
        sodium_memzero(text.data(), static_cast<std::size_t>(text.size()) * sizeof(QChar));
}

QByteArray utf8OfFormC(const QString &text) {
    QString composed = text.normalized(QString::NormalizationForm_C);
    QByteArray bytes = composed.toUtf8();
    wipe(composed);
    return bytes;
}

void deriveOfHost(const Salt &salt, Secret<kFileKeyBytes> &fileKey) {
    QString text = hostText().toString();
    if (text.isEmpty())
        throw Refusal(
            QStringLiteral("its key is the host's: set \"__storekey\" in the host's settings to a text"));
    QByteArray bytes = utf8OfFormC(text);
    const int result = crypto_pwhash(fileKey.data(), fileKey.size(), bytes.constData(),
                                     static_cast<unsigned long long>(bytes.size()), salt.data(), kPasses,
                                     kMemory, crypto_pwhash_ALG_ARGON2ID13);
    sodium_memzero(bytes.data(), static_cast<std::size_t>(bytes.size()));
    wipe(text);
    if (result != 0)
        throw Refusal(QStringLiteral("there is no memory to derive its key; close other programs"));
}

} // namespace

Key preferred() {
    const QJsonValue text = hostText();
    return text.isUndefined() || text.isNull() ? Key::Library1 : Key::Host;
}

void derive(Key key, const Salt &salt, Secret<kFileKeyBytes> &fileKey) {
    switch (key) {
    case Key::Library1:
        return deriveOfLibrary(kLibrary1, salt, fileKey);
    case Key::Library2:
        return deriveOfLibrary(kLibrary2, salt, fileKey);
    case Key::Host:
        return deriveOfHost(salt, fileKey);
    }
    throw Refusal(QStringLiteral("its key is unknown to this version: use a newer one"));
}

} // namespace storekeys
