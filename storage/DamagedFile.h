#pragma once

#include <filesystem>
#include <optional>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/TimeSlices.h"

namespace tallyhorn {

/// Preserves a file that could not be read completely as `NAME.damaged-DATE` beside it, where DATE is the
/// local time as `yyyymmdd-hhmmss`; see Files::KeepAside.  Does nothing if an earlier call has preserved the
/// same content, because the console may start several times before it replaces the file.  Lets pending
/// events run while it compares contents.
std::optional<SystemError> KeepDamagedFile(Files& files, const std::filesystem::path& file,
                                           const Clock& clock, TimeSlices& slices);

}  // namespace tallyhorn
