#include "host/Printable.h"
#include "host/commands/Commands.h"
#include "tools/reports/Failure.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <system_error>

using namespace moratools;

namespace {

bool write(std::FILE *file, const QString &text) {
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file) == std::size_t(bytes.size()) &&
           std::fflush(file) == 0;
}

} // namespace

namespace commands {

void print(const QString &text, const QString &done) {
    if (write(stdout, printable::lines(text)))
        return;
    const int error = errno;
    if (error == EPIPE && done.isEmpty())
        throw OutputLost(QString());
    throw OutputLost(QStringLiteral("%1the output cannot be written (%2); check where it goes")
                         .arg(done.isEmpty() ? QString() : done + QStringLiteral(", but "),
                              QString::fromStdString(std::generic_category().message(error))));
}

void printJson(const QJsonDocument &document, const QString &done) {
    print(printable::json(QString::fromUtf8(document.toJson())), done);
}

void tell(const QString &line) {
    write(stderr, printable::line(line) + QLatin1Char('\n'));
}

} // namespace commands
