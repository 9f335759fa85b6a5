#pragma once

#include "store/core/Failures.h"
#include "store/protection/StoreKeys.h"

#include <QString>

#include <optional>

/// Protecting files as a whole, in place.
///
/// The new content is written beside the file, read again and compared, brought to the disk and only then
/// renamed over it: whatever fails, the file is as it was. A link stays a link; permissions stay. Failures
/// are recorded.
namespace fileprotection {

/// Whether the file starts as a protected one does; false when it cannot be read.
bool isProtected(const QString &path);

bool protect(const QString &path, storekeys::Key key, FailureList &failures);

/// @p key: the key that the file must have been protected with. Without one it is the key that the file
/// names, but for the library's keys where the host has one of its own: a file that anybody can make is not
/// taken for the host's.
bool unprotect(const QString &path, std::optional<storekeys::Key> key, FailureList &failures);

/// Protects a file that is not protected, by @p key or storekeys::preferred(), and unprotects one that is, as
/// unprotect() does.
bool toggle(const QString &path, std::optional<storekeys::Key> key, FailureList &failures);

} // namespace fileprotection
