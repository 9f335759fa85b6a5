#include "tools/sumo/reader/Programme.h"

#include "tools/sumo/reader/DepartureTimes.h"
#include "tools/sumo/reader/XmlInput.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace moratools {

namespace {

// Those that SUMO's programmes use; R is an older form of r.
constexpr char kStates[] = "GgYyRrsuoO";

[[noreturn]] void fail(const XmlInput &input, const SumoProgramme &programme, const QString &what) {
    input.fail(QStringLiteral("programme \"%1\" of signals \"%2\" %3; correct the file or write it again")
                   .arg(programme.programID, programme.id, what));
}

[[noreturn]] void failInPhase(const XmlInput &input, const SumoProgramme &programme, const QString &what) {
    fail(input, programme,
         QStringLiteral("has a phase %1 %2").arg(QString::number(programme.phases.size()), what));
}

void checkState(const XmlInput &input, const SumoProgramme &programme, const QString &state) {
    const auto unknown = std::find_if(state.begin(), state.end(), [](QChar letter) {
        return letter.unicode() > 127 || !std::strchr(kStates, letter.toLatin1());
    });
    if (unknown != state.end())
        failInPhase(input, programme,
                    QStringLiteral("whose state \"%1\" has the unknown letter \"%2\"").arg(state, *unknown));
    const int signalCount = programme.phases.empty() ? state.size() : programme.phases.front().state.size();
    if (state.size() != signalCount)
        failInPhase(input, programme,
                    QStringLiteral("with %1 signals beside one with %2")
                        .arg(QString::number(state.size()), QString::number(signalCount)));
}

SumoPhase readPhase(const XmlInput &input, const SumoProgramme &programme) {
    const Attributes attributes(input);
    SumoPhase phase;
    const QString duration = attributes.text("duration");
    phase.duration = attributes.seconds("duration", 0);
    if (phase.duration < 0 || phase.duration > kLastSecond)
        failInPhase(input, programme, QStringLiteral("of %1 s, which no store can hold").arg(duration));
    phase.state = attributes.text("state");
    checkState(input, programme, phase.state);
    const QStringList following =
        attributes.text("next", QString()).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &place : following) {
        bool ok = false;
        phase.next.push_back(place.toInt(&ok));
        if (!ok)
            attributes.failOn("next", QStringLiteral("where \"%1\" is no number of a phase").arg(place));
    }
    // A negative place says that no phase is named.
    if (!phase.next.empty() && phase.next.front() < 0)
        phase.next.clear();
    return phase;
}

void check(const XmlInput &input, const SumoProgramme &programme) {
    if (std::abs(programme.offset) > kLastSecond)
        fail(input, programme, QStringLiteral("has an offset that no store can hold"));
    double cycle = 0;
    for (std::size_t i = 0; i < programme.phases.size(); ++i) {
        cycle += programme.phases[i].duration;
        for (const int next : programme.phases[i].next) {
            if (next < 0 || std::size_t(next) >= programme.phases.size())
                fail(input, programme,
                     QStringLiteral("goes on after phase %1 with phase %2, which it does not have")
                         .arg(QString::number(i), QString::number(next)));
        }
    }
    if (cycle + std::abs(programme.offset) > kLastSecond)
        fail(input, programme, QStringLiteral("has a cycle that no store can hold"));
}

} // namespace

SumoProgramme readProgramme(XmlInput &input, int file) {
    const Attributes attributes(input);
    SumoProgramme programme;
    input.keepWhileRead(programme.kept);
    programme.source = {file, input.line(), input.elementNumber()};
    programme.id = attributes.text("id");
    programme.programID = attributes.text("programID", QStringLiteral("0"));
    programme.type = attributes.text("type", QStringLiteral("static"));
    programme.offset = attributes.seconds("offset", 0);
    while (input.nextElement()) {
        if (input.name() == QLatin1String("phase"))
            programme.phases.push_back(readPhase(input, programme));
        input.skipElement();
    }
    check(input, programme);
    return programme;
}

} // namespace moratools
