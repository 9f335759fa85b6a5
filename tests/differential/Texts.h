#pragma once

#include "model/NetContents.h"

#include <QStringList>

namespace differential {

/// Every field of every object, a line each, led by the path to it. Children come in the order they have.
QStringList textsOf(NetContents &net);

/// The report of a load, a line for each table and reason.
QStringList reportOf(const NetContents &net);

/// Fails the test where the lists differ, and shows the first lines that do.
void expectSame(const QStringList &expected, const QStringList &actual);

} // namespace differential
