#include "store/DBTools.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sodium.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

/// Measures how fast store files are protected and unprotected, beside a minimal loop over libsodium's
/// stream.
///
/// Usage: bench_protection [MEGABYTES [RUNS [FOLDER]]]
///
/// The loop encrypts the same file into another and does nothing else; protecting also reads the new file
/// again, decrypts and compares it, and waits for the disk. Prints medians; the ratio is loop time by
/// protection time, 1 is as fast.

namespace {

constexpr std::size_t kMegabyte = 1024UL * 1024;

double seconds(const std::function<bool()> &work) {
    const auto start = std::chrono::steady_clock::now();
    if (!work()) {
        for (const CallDbResult &failure : qAsConst(DBTools::mlCallDbResult))
            std::fprintf(stderr, "%s\n", qPrintable(failure.error));
        std::exit(1);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool makeFile(const QString &path, std::size_t megabytes) {
    QFile file(path);
    std::vector<char> bytes(kMegabyte);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    for (std::size_t i = 0; i < megabytes; ++i) {
        randombytes_buf(bytes.data(), bytes.size());
        if (file.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size()))
            return false;
    }
    return true;
}

bool minimalLoop(const QString &from, const QString &to, std::size_t chunk) {
    std::FILE *in = std::fopen(qPrintable(from), "rb");
    std::FILE *out = std::fopen(qPrintable(to), "wb");
    if (!in || !out)
        return false;
    const unsigned char key[crypto_secretstream_xchacha20poly1305_KEYBYTES] = {1};
    unsigned char header[crypto_secretstream_xchacha20poly1305_HEADERBYTES];
    crypto_secretstream_xchacha20poly1305_state state;
    crypto_secretstream_xchacha20poly1305_init_push(&state, header, key);
    std::fwrite(header, 1, sizeof header, out);
    std::vector<unsigned char> content(chunk), sealed(chunk + crypto_secretstream_xchacha20poly1305_ABYTES);
    for (bool ended = false; !ended;) {
        const std::size_t size = std::fread(content.data(), 1, chunk, in);
        ended = std::feof(in) != 0;
        unsigned long long length = 0;
        crypto_secretstream_xchacha20poly1305_push(
            &state, sealed.data(), &length, content.data(), size, nullptr, 0,
            ended ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : 0);
        if (std::fwrite(sealed.data(), 1, length, out) != length)
            return false;
    }
    std::fclose(in);
    return std::fclose(out) == 0;
}

double peakMegabytes() {
#ifdef Q_OS_UNIX
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
#else
    return 0;
#endif
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const std::size_t megabytes = arguments.value(1, QStringLiteral("1024")).toULong();
    const int runs = arguments.value(2, QStringLiteral("5")).toInt();
    const QTemporaryDir folder(arguments.value(3, QDir::tempPath()) + QStringLiteral("/protection"));
    const QString path = folder.filePath(QStringLiteral("store"));
    const QString other = folder.filePath(QStringLiteral("other"));
    if (megabytes == 0 || runs < 1 || sodium_init() < 0 || !makeFile(path, megabytes)) {
        std::fprintf(stderr,
                     "usage: bench_protection [MEGABYTES [RUNS [FOLDER]]], with room for two such files\n");
        return 1;
    }
    const double before = peakMegabytes();
    std::vector<double> small, equal, protect, unprotect;
    for (int run = 0; run < runs; ++run) {
        // They take turns, so that a disturbance of the machine meets all.
        small.push_back(seconds([&] { return minimalLoop(path, other, 4096); }));
        QFile::remove(other);
        equal.push_back(seconds([&] { return minimalLoop(path, other, 65536); }));
        QFile::remove(other);
        protect.push_back(seconds([&] { return DBTools::encryptFile(path); }));
        unprotect.push_back(seconds([&] { return DBTools::decryptFile(path); }));
    }
    const auto line = [&](const char *name, const std::vector<double> &times) {
        const double time = median(times);
        std::printf("%-34s %7.2f s %8.0f MB/s", name, time, double(megabytes) / time);
        if (&times == &protect || &times == &unprotect)
            std::printf("   ratio %.2f (4 KiB), %.2f (64 KiB)", median(small) / time, median(equal) / time);
        std::printf("\n");
    };
    std::printf("%zu MB, median of %d runs\n", megabytes, runs);
    line("minimal loop, chunks of 4 KiB", small);
    line("minimal loop, chunks of 64 KiB", equal);
    line("protect", protect);
    line("unprotect", unprotect);
    std::printf("peak memory %.1f MB, %.1f MB more than before the first run\n", peakMegabytes(),
                peakMegabytes() - before);
}
