#include "fuzz/Fuzzing.h"
#include "model/AppVersionManager.h"

/// Lists of versions: what is taken comes back when it is written, the rest is refused with a line.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString text = QString::fromUtf8(fuzzing::bytesOf(data, size));
    QString error;
    const auto history = AppVersionManager::fromMarkdown(text, error);
    fuzzing::require(history.has_value() != error.startsWith(QLatin1String("line ")), "versions or a reason");
    if (!history)
        return 0;
    const QString written = AppVersionManager::toMarkdown(history->versions());
    const auto again = AppVersionManager::fromMarkdown(written, error);
    fuzzing::require(again.has_value(), "what was written is taken");
    fuzzing::require(AppVersionManager::toJson(again->versions()) ==
                         AppVersionManager::toJson(history->versions()),
                     "the same versions again");
    return 0;
}
