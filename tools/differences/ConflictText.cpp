#include "tools/differences/ConflictText.h"

#include "tools/differences/PatchText.h"
#include "tools/reports/Failure.h"

#include <QIODevice>
#include <QJsonDocument>

namespace moratools {

namespace {

constexpr const char *kTake = "take";
constexpr const char *kValue = "value";

QByteArray lineOf(const QJsonObject &object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject headerOf(const MergedDigests &networks) {
    return {{QStringLiteral("conflicts"), 1},
            {QStringLiteral("base"), networks.base},
            {QStringLiteral("ours"), networks.ours},
            {QStringLiteral("theirs"), networks.theirs}};
}

QJsonValue toJson(const Answer &answer) {
    switch (answer.take) {
    case Answer::Take::Ours:
        return QStringLiteral("ours");
    case Answer::Take::Theirs:
        return QStringLiteral("theirs");
    case Answer::Take::Value:
        return QJsonObject{{QLatin1String(kValue), patchtext::toJson(answer.value)}};
    default:
        return QJsonValue::Null;
    }
}

/// False for what is no answer to the conflict.
bool fromJson(const QJsonValue &json, bool isColumn, Answer &answer) {
    if (json.isNull())
        return true;
    if (json.isObject()) {
        answer.take = Answer::Take::Value;
        const QJsonObject value = json.toObject();
        return isColumn && value.size() == 1 && value.contains(QLatin1String(kValue)) &&
               patchtext::fromJson(value.value(QLatin1String(kValue)), answer.value);
    }
    const bool isOurs = json == QJsonValue(QStringLiteral("ours"));
    answer.take = isOurs ? Answer::Take::Ours : Answer::Take::Theirs;
    return isOurs || json == QJsonValue(QStringLiteral("theirs"));
}

QJsonObject readLine(QIODevice &device, const QString &name, int line) {
    constexpr qint64 longest = qint64(256) * 1024 * 1024;
    const QJsonDocument document = QJsonDocument::fromJson(device.readLine(longest));
    if (!document.isObject())
        throw Failure(
            QStringLiteral("%1: line %2 is no conflict; give the file that \"morastore merge\" has written")
                .arg(name, QString::number(line)));
    return document.object();
}

} // namespace

QByteArray textOf(const std::vector<Conflict> &conflicts, const MergedDigests &networks) {
    QByteArray text = lineOf(headerOf(networks)) + '\n';
    for (const Conflict &conflict : conflicts) {
        // What is asked for stands first.
        const QByteArray answer = QJsonDocument(QJsonObject{{QLatin1String(kTake), toJson(conflict.answer)}})
                                      .toJson(QJsonDocument::Compact);
        text += answer.left(answer.size() - 1) + ',' + lineOf(conflict.text).mid(1) + '\n';
    }
    return text;
}

Answers readAnswers(QIODevice &device, const QString &name, const MergedDigests &networks) {
    if (readLine(device, name, 1) != headerOf(networks))
        throw Failure(
            QStringLiteral(
                "%1: these are conflicts of other networks; merge without it to have those of these")
                .arg(name));
    Answers answers;
    for (int line = 2; !device.atEnd(); ++line) {
        QJsonObject conflict = readLine(device, name, line);
        Answer answer;
        const bool isColumn = conflict.contains(QStringLiteral("column"));
        if (!fromJson(conflict.value(QLatin1String(kTake)), isColumn, answer))
            throw Failure(
                QStringLiteral("%1: line %2 has no answer in \"take\"; give null, \"ours\", \"theirs\"%3")
                    .arg(name, QString::number(line),
                         isColumn ? QStringLiteral(" or {\"value\": ...}") : QString()));
        conflict.remove(QLatin1String(kTake));
        answers.insert(lineOf(conflict), answer);
    }
    return answers;
}

} // namespace moratools
