#include "tools/session/StoreAddress.h"
#include "fuzz/Fuzzing.h"
#include "tools/reports/Failure.h"

using namespace moratools;

/// Addresses of stores: a path stays as it is; a connection string keeps what it says when it is named.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QString text = QString::fromUtf8(fuzzing::bytesOf(data, size));
    try {
        const StoreAddress address(text);
        if (!address.isServer()) {
            fuzzing::require(address.path() == text && address.name() == text, "a path as it was given");
            return 0;
        }
        fuzzing::require(!address.name().contains(QChar(0)), "a name ends where it ends");
        bool hasOpenOption = false;
        for (const StoreAddress::Option &option : address.options())
            hasOpenOption = hasOpenOption || !option.isSecret;
        if (!hasOpenOption)
            return 0;
        const StoreAddress again(address.name());
        fuzzing::require(again.isServer(), "the name is a connection string");
        for (const StoreAddress::Option &option : address.options())
            fuzzing::require(option.isSecret ? again.value(option.keyword).isEmpty()
                                             : again.value(option.keyword) == QString::fromUtf8(option.value),
                             "the name says the same, without secrets");
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
