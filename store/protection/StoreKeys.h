#pragma once

#include "store/protection/Secret.h"

/// The keys that protect store files.
namespace storekeys {

/// Which key a protected file needs; the numbers stand in the files.
enum class Key : unsigned char {
    Library1 = 1, ///< compiled into the library
    Library2 = 2, ///< compiled into the library
    Host = 3      ///< derived from the text "__storekey" of the host's JSON settings
};

constexpr std::size_t kSaltBytes = crypto_pwhash_SALTBYTES;
constexpr std::size_t kFileKeyBytes = crypto_secretstream_xchacha20poly1305_KEYBYTES;
using Salt = std::array<unsigned char, kSaltBytes>;

/// The host's key when its settings have one, otherwise the library's first.
Key preferred();

/// Derives a file's own key from @p key and the file's @p salt. Throws Refusal when there is no such key
/// here.
///
/// Of the library's keys, which are random, by BLAKE2b (crypto_generichash, keyed, over the salt). Of the
/// host's text, which a person may have thought of, by Argon2id 1.3 (crypto_pwhash; 2 passes, 64 MiB), after
/// it was brought to Unicode form C and UTF-8.
void derive(Key key, const Salt &salt, Secret<kFileKeyBytes> &fileKey);

} // namespace storekeys
