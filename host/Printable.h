#pragma once

#include <QString>

/// Text of a store or a file as it may stand in a line for people. A terminal obeys control characters: they
/// would move the cursor, colour or clear the screen, or show a line in another order than it has. In their
/// place stands what programmers write for them: \n, \x1b, \u202e.
namespace printable {

/// On one line: line breaks and tabs are written out, too.
QString line(const QString &text);
/// Line breaks and tabs stay.
QString lines(const QString &text);
/// JSON that means the same: what JSON itself leaves as it is becomes \uXXXX.
QString json(const QString &text);

} // namespace printable
