#include "model/AppVersionManager.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

namespace {

/// Takes a list of versions line by line.
class Reader {
public:
    QList<AppVersion> versions;

    /// Takes the next line; the reason when it does not fit.
    QString take(const QString &line) {
        if (line.trimmed().isEmpty()) {
            mInNote = false;
            return {};
        }
        if (line.startsWith(QLatin1String("# ")))
            return title();
        if (!mHasTitle)
            return QStringLiteral("the title (# ...) is missing");
        if (line.startsWith(QLatin1String("## ")))
            return heading(line);
        if (line.startsWith(QLatin1String("- ")) && !versions.isEmpty()) {
            const QString note = line.mid(2).trimmed();
            if (note.isEmpty())
                return QStringLiteral("a note without text");
            versions.last().notes.append(note);
            mInNote = true;
            return {};
        }
        if (line.startsWith(QLatin1String("  ")) && mInNote) {
            versions.last().notes.last() += QLatin1Char(' ') + line.trimmed();
            return {};
        }
        return QStringLiteral("this is no heading (## 1.2.3 (yyyy-MM-dd)) and no note (- ...) of a version");
    }

    /// The reason why the text must not end here.
    QString end() const {
        return versions.isEmpty() ? QStringLiteral("there is no version") : lastLacksNotes();
    }

private:
    QString title() {
        if (mHasTitle)
            return QStringLiteral("a second title");
        mHasTitle = true;
        return {};
    }

    QString heading(const QString &line) {
        static const QRegularExpression form(QStringLiteral(R"(\A## (\S+) \((\d{4}-\d\d-\d\d)\)\z)"));
        const QRegularExpressionMatch parts = form.match(line);
        AppVersion version;
        version.number = AppVersionManager::numberOf(parts.captured(1));
        version.date = QDate::fromString(parts.captured(2), Qt::ISODate);
        if (version.number.isNull() || !version.date.isValid())
            return QStringLiteral("the heading of a version is ## 1.2.3 (yyyy-MM-dd)");
        if (!versions.isEmpty()) {
            if (version.number.normalized() >= versions.last().number.normalized())
                return QStringLiteral("version %1 must stand before %2: newest first")
                    .arg(version.number.toString(), versions.last().number.toString());
            if (version.date > versions.last().date)
                return QStringLiteral("version %1 is dated after the newer one")
                    .arg(version.number.toString());
            QString missing = lastLacksNotes();
            if (!missing.isEmpty())
                return missing;
        }
        mInNote = false;
        versions.append(version);
        return {};
    }

    QString lastLacksNotes() const {
        if (!versions.last().notes.isEmpty())
            return {};
        return QStringLiteral("version %1 has no notes").arg(versions.last().number.toString());
    }

    bool mHasTitle = false;
    bool mInNote = false;
};

bool write(const QString &path, const QByteArray &bytes, QString &error) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
    return false;
}

} // namespace

const AppVersionManager &AppVersionManager::ofLibrary() {
    static const AppVersionManager manager = [] {
        QFile file(QStringLiteral(":/Resources/CHANGELOG.md"));
        file.open(QIODevice::ReadOnly);
        QString error;
        // The build has checked the text.
        return fromMarkdown(QString::fromUtf8(file.readAll()), error).value();
    }();
    return manager;
}

std::optional<AppVersionManager> AppVersionManager::fromMarkdown(const QString &markdown, QString &error) {
    Reader reader;
    int number = 0;
    const QStringList lines = markdown.split(QLatin1Char('\n'));
    for (QString line : lines) {
        ++number;
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QString reason = reader.take(line);
        if (!reason.isEmpty()) {
            error = QStringLiteral("line %1: %2").arg(QString::number(number), reason);
            return {};
        }
    }
    const QString reason = reader.end();
    if (!reason.isEmpty()) {
        error = QStringLiteral("line %1: %2").arg(QString::number(number), reason);
        return {};
    }
    AppVersionManager manager;
    manager.mVersions = reader.versions;
    return manager;
}

const AppVersion *AppVersionManager::find(const QVersionNumber &number) const {
    for (const AppVersion &version : mVersions) {
        if (version.number.normalized() == number.normalized())
            return &version;
    }
    return nullptr;
}

QList<AppVersion> AppVersionManager::newerThan(const QVersionNumber &number) const {
    QList<AppVersion> newer;
    for (const AppVersion &version : mVersions) {
        if (version.number.normalized() > number.normalized())
            newer.append(version);
    }
    return newer;
}

QVersionNumber AppVersionManager::numberOf(const QString &text) {
    const QVersionNumber number = QVersionNumber::fromString(text);
    // Signs, leading zeros, what follows the number: text that does not come back is no version's.
    return number.toString() == text ? number : QVersionNumber();
}

QString AppVersionManager::toMarkdown(const QList<AppVersion> &versions) {
    QString text = QStringLiteral("# Changes\n");
    for (const AppVersion &version : versions) {
        text += QStringLiteral("\n## %1 (%2)\n\n")
                    .arg(version.number.toString(), version.date.toString(Qt::ISODate));
        for (const QString &note : version.notes)
            text += QStringLiteral("- %1\n").arg(note);
    }
    return text;
}

QJsonArray AppVersionManager::toJson(const QList<AppVersion> &versions) {
    QJsonArray array;
    for (const AppVersion &version : versions) {
        array.append(QJsonObject{{QStringLiteral("version"), version.number.toString()},
                                 {QStringLiteral("date"), version.date.toString(Qt::ISODate)},
                                 {QStringLiteral("notes"), QJsonArray::fromStringList(version.notes)}});
    }
    return array;
}

bool AppVersionManager::writeMarkdown(const QString &path, QString &error) const {
    return write(path, toMarkdown(mVersions).toUtf8(), error);
}

bool AppVersionManager::writeJson(const QString &path, QString &error) const {
    return write(path, QJsonDocument(toJson(mVersions)).toJson(), error);
}
