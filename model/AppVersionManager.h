#pragma once

#include "model/AppVersion.h"
#include "model/MoraStoreExport.h"

#include <QJsonArray>
#include <QList>

#include <optional>

/// A list of released versions, newest first; never empty.
///
/// Its source is Markdown: a title, then for each version a heading with number and date and below it the
/// notes as list items, which may go on in lines indented by two blanks:
///
///     # Changes
///
///     ## 1.10 (2026-11-21)
///
///     - Stores of several networks are read
///       and written.
///
/// Numbers descend strictly, dates do not ascend, and every version has a note. Two numbers are equal when
/// they differ in zeros at the end only.
class MORASTORE_EXPORT AppVersionManager {
public:
    /// The versions of this library, from the CHANGELOG.md that it was built with.
    static const AppVersionManager &ofLibrary();

    /// The versions in @p markdown; nothing when the text is not of the form above, with @p error saying in
    /// which line and why.
    static std::optional<AppVersionManager> fromMarkdown(const QString &markdown, QString &error);

    const QList<AppVersion> &versions() const { return mVersions; }
    const AppVersion &newest() const { return mVersions.first(); }
    /// The version of that number; null without one. The list owns it.
    const AppVersion *find(const QVersionNumber &number) const;
    /// The versions that are newer than @p number, which need not be in the list.
    QList<AppVersion> newerThan(const QVersionNumber &number) const;

    /// A version's number as text names it, "0.1.0"; null when the text is anything else.
    static QVersionNumber numberOf(const QString &text);

    /// @p versions in the form that fromMarkdown() reads.
    static QString toMarkdown(const QList<AppVersion> &versions);
    /// @p versions as objects {"version": "0.1.0", "date": "2026-11-21", "notes": ["..."]}.
    static QJsonArray toJson(const QList<AppVersion> &versions);

    /// @{ Writes all versions to a file in UTF-8, which is replaced as a whole or left as it was. False when
    /// it cannot be written, with @p error naming the file and the reason.
    bool writeMarkdown(const QString &path, QString &error) const;
    bool writeJson(const QString &path, QString &error) const;
    /// @}

private:
    QList<AppVersion> mVersions;
};
