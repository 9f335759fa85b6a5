#include "store/guard/FileGuard.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace fileguard {

namespace {

// The end of a journal of a transaction on several files, https://www.sqlite.org/fileformat.html, 3: the name
// of the super-journal, its length, a checksum, and the magic that a journal also starts with.
constexpr char kMagic[] = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
constexpr int kMagicSize = 8;
constexpr int kRecordSize = 16; ///< without the name
constexpr quint32 kLongestName = 4096;

/// The file that a super-journal record at the end of @p journal names; a null text without such a record.
/// The checksum does not matter: a sound journal does not end in the magic either way.
QString superJournalOf(const QString &journal) {
    QFile file(journal);
    if (!file.open(QIODevice::ReadOnly) || file.size() < kRecordSize)
        return {};
    file.seek(file.size() - kRecordSize);
    const QByteArray record = file.read(kRecordSize);
    if (!record.endsWith(QByteArray::fromRawData(kMagic, kMagicSize)))
        return {};
    const qint64 length = qMin(qFromBigEndian<quint32>(record.constData()), kLongestName);
    file.seek(qMax<qint64>(0, file.size() - kRecordSize - length));
    return QString::fromUtf8(file.read(length)).append(QLatin1String(""));
}

} // namespace

QString resolved(const QString &path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

QString refusal(const QString &path, Purpose purpose) {
    const QString file = resolved(path);
    for (const char *suffix : {"-journal", "-wal", "-shm"}) {
        const QFileInfo beside(file + QLatin1String(suffix));
        if (beside.isSymLink() || (beside.exists() && !beside.isFile()))
            return QStringLiteral("%1 beside it is a link or no regular file, and the store would be kept "
                                  "there; move it away")
                .arg(beside.fileName());
    }
    if (purpose == Purpose::Read)
        return {};
    const QFileInfo journal(file + QLatin1String("-journal"));
    const QString superJournal = superJournalOf(journal.filePath());
    if (superJournal.isNull())
        return {};
    return QStringLiteral(
               "%1 beside it names another file, %2, which would be deleted with it; finish it with "
               "the program that wrote it, or get the store anew")
        .arg(journal.fileName(), superJournal);
}

} // namespace fileguard
