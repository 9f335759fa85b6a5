#include "host/Failure.h"
#include "host/commands/Commands.h"

#include <cstdio>

namespace {

bool write(std::FILE *file, const QString &text) {
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file) == std::size_t(bytes.size()) &&
           std::fflush(file) == 0;
}

} // namespace

namespace commands {

void print(const QString &text) {
    if (!write(stdout, text))
        throw Failure(QStringLiteral("the output cannot be written; check where it goes"));
}

void tell(const QString &line) {
    write(stderr, line + QLatin1Char('\n'));
}

} // namespace commands
