#include "PostgresqlSchema.h"

#include <QCoreApplication>
#include <QMap>
#include <QSaveFile>
#include <QTextStream>

#include <stdexcept>

/// Makes an SQL text of the PostgreSQL schema from that of the SQLite template.
///
/// Usage: make_postgresql_text KIND OUTPUT FILE.sql...
///
/// | kind | what |
/// | --- | --- |
/// | whole | a store whose tables are plain |
/// | parents | a store whose networks are spread over partitions: what is there once |
/// | leaves | what is there for each partition: the tables that hold the rows, with the keys among them |
/// | net_keys | the keys of those tables to Net, which is there once; "{store}" stands for its schema |
/// | citus | what spreads a store of plain tables over the machines of a Citus cluster |

namespace {

using Schema = std::vector<Piece>;

/// Commas go after columns and keys, but for the last; comments have none.
QString tableText(const Piece &table, const QStringList &body, const QString &end) {
    QStringList lines = body;
    bool isLast = true;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        if (line->trimmed().startsWith(QLatin1String("--")))
            continue;
        if (!isLast)
            line->append(QLatin1Char(','));
        isLast = false;
    }
    lines.prepend(QStringLiteral("create table %1 (").arg(table.table));
    lines.append(end);
    return lines.join(QLatin1Char('\n'));
}

QString plainTable(const Piece &table) {
    QStringList body = table.columns;
    if (!table.primaryKey.isEmpty())
        body.append(table.primaryKey);
    return tableText(table, body, QStringLiteral(");"));
}

QString keyText(const Piece &table, const ForeignKey &key) {
    return QStringLiteral("alter table %1 add %2;").arg(table.table, key.text);
}

/// What is asked of all networks at once is the store's own, whichever servers the rest is on: the records of
/// networks, their counters, and link types, which say in which language a store keeps its words.
const QStringList kOfTheStore{QStringLiteral("Net"), QStringLiteral("IDGenerater"),
                              QStringLiteral("LinkType")};

bool isPartitioned(const Piece &table) {
    return table.isTable() && table.isLedByNetwork() && !kOfTheStore.contains(table.table);
}

QStringList partitionedTables(const Schema &schema) {
    QStringList names;
    for (const Piece &piece : schema) {
        if (isPartitioned(piece))
            names.append(piece.table);
    }
    return names;
}

QStringList whole(const Schema &schema) {
    QStringList lines;
    QStringList keys;
    for (const Piece &piece : schema) {
        lines.append(piece.isTable() ? plainTable(piece) : piece.line);
        for (const ForeignKey &key : piece.keys)
            keys.append(keyText(piece, key));
    }
    return lines + keys;
}

/// A parent has no keys: one that is unique cannot be where a leaf is on another server, and one that refers
/// to a parent is looked up in every leaf.
QStringList parents(const Schema &schema) {
    const QStringList partitioned = partitionedTables(schema);
    QStringList lines;
    QStringList keys;
    for (const Piece &piece : schema) {
        if (isPartitioned(piece)) {
            lines.append(tableText(piece, piece.columns,
                                   QStringLiteral(") partition by hash (%1);").arg(piece.leader())));
            continue;
        }
        if (piece.isTable())
            lines.append(plainTable(piece));
        else if (!partitioned.contains(piece.table))
            lines.append(piece.line);
        for (const ForeignKey &key : piece.keys)
            keys.append(keyText(piece, key));
    }
    return lines + keys;
}

QStringList leaves(const Schema &schema) {
    const QStringList partitioned = partitionedTables(schema);
    QStringList lines;
    QStringList keys;
    for (const Piece &piece : schema) {
        if (isPartitioned(piece))
            lines.append(plainTable(piece));
        else if (!piece.isTable() && partitioned.contains(piece.table))
            lines.append(piece.line);
        for (const ForeignKey &key : piece.keys) {
            if (partitioned.contains(piece.table) && partitioned.contains(key.references))
                keys.append(keyText(piece, key));
        }
    }
    return lines + keys;
}

QStringList netKeys(const Schema &schema) {
    QStringList keys;
    for (const Piece &piece : schema) {
        for (ForeignKey key : piece.keys) {
            if (!isPartitioned(piece) || key.references != QLatin1String("Net"))
                continue;
            key.text.replace(QLatin1String(" references Net "), QLatin1String(" references {store}.Net "));
            keys.append(keyText(piece, key));
        }
    }
    return keys;
}

/// Tables that others refer to go first, as the cluster asks for it.
QStringList citus(const Schema &schema) {
    QStringList lines{QStringLiteral(
        "-- Spreads an empty store over the machines of a Citus cluster: each network is on "
        "one of them as a whole.\n"
        "-- Run it once in a new store, as the owner of its tables. It ends at the first "
        "statement that fails, and nothing is changed.\n"
        "\\set ON_ERROR_STOP on\n"
        "begin;\n"
        "-- One connection to a machine: each table refers to tables that the same transaction made.\n"
        "set local citus.multi_shard_modify_mode to 'sequential';")};
    QList<const Piece *> left;
    for (const Piece &piece : schema) {
        if (piece.isTable())
            left.append(&piece);
    }
    const auto waits = [&left](const Piece &table) {
        for (const ForeignKey &key : table.keys) {
            for (const Piece *other : left) {
                if (other != &table && other->table == key.references)
                    return true;
            }
        }
        return false;
    };
    const auto next = [&] {
        for (int i = 0; i < left.size(); ++i) {
            if (!waits(*left[i]))
                return i;
        }
        throw std::runtime_error("tables refer to each other in a circle");
    };
    while (!left.isEmpty()) {
        const Piece &table = *left.takeAt(next());
        const QString name = table.table.toLower();
        if (!table.isLedByNetwork())
            lines.append(QStringLiteral("select create_reference_table('%1');").arg(name));
        else if (name == QLatin1String("net"))
            lines.append(QStringLiteral("select create_distributed_table('net', 'netid');"));
        else
            lines.append(
                QStringLiteral("select create_distributed_table('%1', 'netid', colocate_with => 'net');")
                    .arg(name));
    }
    return lines << QStringLiteral("commit;");
}

const QMap<QString, QStringList (*)(const Schema &)> kKinds{{QStringLiteral("whole"), whole},
                                                            {QStringLiteral("parents"), parents},
                                                            {QStringLiteral("leaves"), leaves},
                                                            {QStringLiteral("net_keys"), netKeys},
                                                            {QStringLiteral("citus"), citus}};

void write(const QString &path, const QString &text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        throw std::runtime_error(qPrintable(path + QStringLiteral(": ") + file.errorString()));
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication app(argc, argv);
    QStringList files = QCoreApplication::arguments().mid(1);
    const auto kind = kKinds.value(files.value(0));
    if (files.size() < 3 || !kind) {
        QTextStream(stderr) << "usage: make_postgresql_text KIND OUTPUT FILE.sql...; the kinds are "
                            << kKinds.keys().join(QStringLiteral(", ")) << '\n';
        return 2;
    }
    files.removeFirst();
    const QString output = files.takeFirst();
    try {
        write(output, kind(postgresqlSchema(files)).join(QLatin1Char('\n')) + QLatin1Char('\n'));
    } catch (const std::runtime_error &error) {
        QTextStream(stderr) << error.what() << '\n';
        return 1;
    }
    return 0;
}
