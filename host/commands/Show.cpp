#include "host/Failure.h"
#include "host/commands/Commands.h"
#include "host/store/Kinds.h"
#include "host/store/NetworkObjects.h"
#include "host/store/OpenStore.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace commands {

namespace {

struct Options {
    std::string store;
    std::string kind;
    long id = -1;
    long net = 0;
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
    const QString indent(2 * depth, QLatin1Char(' '));
    if (value.isObject()) {
        text += QStringLiteral("%1%2\n").arg(indent, name);
        const QJsonObject object = value.toObject();
        for (auto field = object.constBegin(); field != object.constEnd(); ++field)
            appendField(text, field.key(), field.value(), depth + 1);
    } else if (value.isArray()) {
        const QJsonArray list = value.toArray();
        text += QStringLiteral("%1%2 (%3)\n").arg(indent, name, QString::number(list.size()));
        for (int i = 0; i < list.size(); ++i)
            appendField(text, QString::number(i + 1), list.at(i), depth + 1);
    } else {
        const QString shown =
            value.isDouble() ? QString::number(value.toDouble(), 'g', 15) : value.toVariant().toString();
        text += QStringLiteral("%1%2 %3\n").arg(indent, name.leftJustified(22), shown);
    }
}

void showOne(const NamedKind &kind, long netId, const Options &options) {
    const std::optional<Description> object = kind.read(netId, options.id);
    requireServerAlive();
    if (!object)
        throw Failure(QStringLiteral("network %1 has no %2 of kind %3; without a number \"show\" lists those "
                                     "that it has")
                          .arg(QString::number(netId), QString::number(options.id), kind.name));
    if (options.json) {
        print(QString::fromUtf8(QJsonDocument(object->fields).toJson()));
        return;
    }
    QString text;
    for (auto field = object->fields.constBegin(); field != object->fields.constEnd(); ++field)
        appendField(text, field.key(), field.value(), 0);
    print(text);
}

void showList(const NamedKind &kind, long netId, bool json) {
    QJsonArray list;
    QString text;
    const QList<long> ids = kind.ids(netId);
    for (const long id : ids) {
        const std::optional<Description> object = kind.read(netId, id);
        const QString name = object ? object->name : QStringLiteral("(cannot be read)");
        list.append(QJsonObject{{QStringLiteral("id"), qint64(id)}, {QStringLiteral("name"), name}});
        text += QStringLiteral("%1  %2\n").arg(QString::number(id).rightJustified(8), name);
    }
    requireServerAlive();
    print(json ? QString::fromUtf8(QJsonDocument(list).toJson()) : text);
}

void show(const Options &options) {
    const NamedKind &kind = kindCalled(QString::fromStdString(options.kind));
    const OpenStore store(QString::fromStdString(options.store), Access::Read);
    // What the kind refers to stays in memory until it is shown.
    NetworkObjects network = openNetwork(options.net);
    const long netId = network.record.netId;
    if (kind.before != Before::Nothing)
        network.links = readAll<Link>(netId);
    if (kind.before == Before::SignalGroups)
        network.traffic.signalGroups = readAll<SignalGroup>(netId);
    if (options.id < 0)
        showList(kind, netId, options.json);
    else
        showOne(kind, netId, options);
}

} // namespace

void addShow(CLI::App &program, Run &run) {
    const auto options = std::make_shared<Options>();
    CLI::App *command =
        program.add_subcommand("show", "List the objects of a kind, or show one in all its fields.");
    command->add_option("STORE", options->store, kStoreHelp)->required();
    command->add_option("KIND", options->kind, kindNames().toStdString())->required();
    command->add_option("ID", options->id, "Number of the object; without it all are listed")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--net", options->net, "Number of the network; default: the store's first")
        ->type_name("ID");
    command->add_flag("--json", options->json, "As JSON");
    command->callback([options, &run] { run = [options] { show(*options); }; });
}

} // namespace commands
