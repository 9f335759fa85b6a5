#pragma once

#include <QString>
#include <QStringList>

class SpecialWords;

/// Words of the dictionary that are translated when they are read. A whole save writes what a whole load reads
/// as the same: the English word into an English store, whatever the host's language is, and the very word that
/// was loaded where several are shown alike. Single inserts of a Chinese host write the displayed word.
namespace storedword {

/// What to keep beside @p shown, which was read as @p stored: nothing where writing it gives that back.
QString kept(const SpecialWords &words, const QString &stored, const QString &shown);

/// The word to write for @p shown: @p kept while it is still what that shows, else the translated one.
QString of(const SpecialWords &words, const QString &shown, const QString &kept);

/// The same for the word at @p place of a list. Where the list was changed, the first of its words that shows
/// so counts.
QString of(const SpecialWords &words, const QString &shown, const QStringList &kept, int place);

} // namespace storedword
