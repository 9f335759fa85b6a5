#include "host/Printable.h"
#include "host/commands/Commands.h"
#include "host/commands/OpenedStore.h"
#include "store/DBTools.h"
#include "tools/kinds/Kinds.h"
#include "tools/kinds/NetworkObjects.h"
#include "tools/reports/Failure.h"
#include "tools/session/NetworkChoice.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <string>

using namespace moratools;

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string kind;
    std::string id;
    std::string net;
    bool json = false;
};

QString kindNames() {
    QStringList names;
    for (const NamedKind &kind : namedKinds())
        names.append(kind.name);
    return names.join(QStringLiteral(", "));
}

const NamedKind &kindCalled(const QString &name) {
    for (const NamedKind &kind : namedKinds()) {
        if (kind.name.compare(name, Qt::CaseInsensitive) == 0)
            return kind;
    }
    throw Failure(
        QStringLiteral("there is no kind \"%1\" of objects; give one of %2").arg(name, kindNames()));
}

/// A field and, further in, what is nested in it: a line for each single value.
void appendField(QString &text, const QString &name, const QJsonValue &value, int depth) {
    const QString label = QString(2 * depth, QLatin1Char(' ')) + printable::line(name);
    if (value.isObject()) {
        text += label + QLatin1Char('\n');
        const QJsonObject object = value.toObject();
        for (auto field = object.constBegin(); field != object.constEnd(); ++field)
            appendField(text, field.key(), field.value(), depth + 1);
    } else if (value.isArray()) {
        const QJsonArray list = value.toArray();
        text += QStringLiteral("%1 (%2)\n").arg(label, QString::number(list.size()));
        for (int i = 0; i < list.size(); ++i)
            appendField(text, QString::number(i + 1), list.at(i), depth + 1);
    } else {
        const QString shown =
            value.isDouble() ? QString::number(value.toDouble(), 'g', 15) : value.toVariant().toString();
        text += QStringLiteral("%1 %2\n").arg(label.leftJustified(2 * depth + 22), printable::line(shown));
    }
}

void showOne(const OpenedStore &store, const NamedKind &kind, long netId, long id, bool json) {
    const std::optional<Description> object = kind.read(store, netId, id);
    store.requireServerAlive();
    if (!object)
        throw Failure(QStringLiteral("network %1 has no %2 of kind %3; without a number \"show\" lists those "
                                     "that it has")
                          .arg(QString::number(netId), QString::number(id), kind.name));
    const QJsonObject fields = object->toJson();
    if (json) {
        printJson(QJsonDocument(fields));
        return;
    }
    QString text;
    for (auto field = fields.constBegin(); field != fields.constEnd(); ++field)
        appendField(text, field.key(), field.value(), 0);
    print(text);
}

void showList(const OpenedStore &store, const NamedKind &kind, long netId, bool json) {
    QJsonArray list;
    QString text;
    const QList<NamedObject> objects = kind.list(store, netId);
    for (const NamedObject &object : objects) {
        if (json)
            list.append(QJsonObject{{QStringLiteral("id"), qint64(object.id)},
                                    {QStringLiteral("name"), object.name}});
        else
            text += QStringLiteral("%1  %2\n")
                        .arg(QString::number(object.id).rightJustified(8), printable::line(object.name));
    }
    store.requireServerAlive();
    if (json)
        printJson(QJsonDocument(list));
    else
        print(text);
}

void show(const Options &options) {
    const NamedKind &kind = kindCalled(QString::fromStdString(options.kind));
    const OpenedStore store(QString::fromStdString(options.store), Access::Read);
    const NetRecord record = openNetwork(store, chosenNetwork(store, options.net)).record;
    const long netId = record.netId;
    if (options.id.empty()) {
        showList(store, kind, netId, options.json);
        return;
    }
    // What the object refers to is found among the current network's, which is read at one go. What cannot
    // be read of it is missed by the object alone.
    NetworkObjects network;
    if (kind.needsNetwork && !DBTools::loadNet(store.db(), netId, network))
        store.refuseReading(QStringLiteral("network \"%1\"").arg(record.name));
    showOne(store, kind, netId, std::stol(options.id), options.json);
}

/// CLI's own check of a number that is not negative gives the largest one in 309 digits.
std::string checkId(const std::string &text) {
    bool isNumber = false;
    const int id = QString::fromStdString(text).toInt(&isNumber);
    return isNumber && id >= 0 ? std::string()
                               : "\"" + text + "\" is no number of an object; give one from 0 to 2147483647";
}

} // namespace

void addShow(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("show", "List the objects of a kind, or show one in all its fields.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("KIND", options->kind, kindNames().toStdString())->required();
    command->add_option("ID", options->id, "Number of the object; without it all are listed")
        ->check(checkId, std::string());
    command->add_option("--net", options->net, kNetHelp)->type_name("NET");
    command->add_flag("--json", options->json, "As JSON");
    command->callback([options, &run] { run.work = [options] { show(*options); }; });
}

} // namespace commands
