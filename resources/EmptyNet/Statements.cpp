#include "Statements.h"

#include <QFile>
#include <QStringList>
#include <QTextStream>

#include <stdexcept>

QStringList readLines(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw std::runtime_error(qPrintable(path + QStringLiteral(": ") + file.errorString()));
    QTextStream in(&file);
    in.setCodec("UTF-8");
    QStringList lines;
    while (!in.atEnd())
        lines.append(in.readLine());
    return lines;
}

QList<Statement> readStatements(const QString &path) {
    QList<Statement> statements;
    Statement current{QString(), 0};
    int line = 0;
    for (const QString &text : readLines(path)) {
        ++line;
        if (current.text.isEmpty() && text.trimmed().isEmpty())
            continue;
        if (text.trimmed().startsWith(QLatin1String("--")))
            continue;
        if (current.text.isEmpty())
            current.line = line;
        else
            current.text += QLatin1Char('\n');
        current.text += text;
        if (!text.endsWith(QLatin1Char(';')))
            continue;
        current.text.chop(1);
        statements.append(current);
        current = {QString(), 0};
    }
    if (!current.text.isEmpty())
        throw std::runtime_error(
            qPrintable(QStringLiteral("%1:%2: the statement has no semicolon at the end of a line")
                           .arg(path, QString::number(current.line))));
    return statements;
}
