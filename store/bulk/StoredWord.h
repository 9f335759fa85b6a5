#pragma once

#include <QString>
#include <QStringList>

class SpecialWords;

/// Words of the dictionary that a whole load keeps beside the displayed ones, so that a whole save writes
/// back what was loaded. Single operations translate word by word, and not every word comes back: an English
/// store under a Chinese host reads "Red" as the Chinese word, which is written as it is.
namespace storedword {

/// What to keep beside @p shown, which was read as @p stored: nothing where writing it gives that back.
QString kept(const SpecialWords &words, const QString &stored, const QString &shown);

/// The word to write for @p shown: @p kept while it is still what that shows, else the translated one.
QString of(const SpecialWords &words, const QString &shown, const QString &kept);

/// The same for the word at @p place of a list. Where the list was changed, the first of its words that shows
/// so counts.
QString of(const SpecialWords &words, const QString &shown, const QStringList &kept, int place);

} // namespace storedword
