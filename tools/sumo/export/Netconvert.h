#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace moratools {

/// SUMO's program that makes networks, where it is installed.
namespace netconvert {

/// Its path; empty where it is not found on the search path for programs.
QString program();

/// What it must be told so that a network comes out as it went in: the attributes of its `<net>` as options, and to leave
/// out what it would improve. `net` is empty for a network that did not come from SUMO.
QStringList optionsFor(const QJsonObject &net);

/// Makes the network OUTPUT of the files that writePlainNet() has written. The programme runs in the environment of this
/// process, with SUMO_HOME where that is not set and the files stand beside the program.
/// @return empty, or the first line in which it says why it cannot.
QString build(const QString &program, const QString &prefix, const QString &output,
              const QStringList &options);

} // namespace netconvert

} // namespace moratools
