#pragma once

#include <string>

#include "records/AlarmRecord.h"

namespace tallyhorn {

/// The one text in which the console keeps a notification that did not arrive in the NetBIOS layout: ten
/// labelled lines ended by CR LF, the description on the lines after its label.  The type is written as it
/// stands in the record; callers give it its display form first.  Pure and safe in any thread.
std::string BuildMessageText(const AlarmRecord& alarm);

}  // namespace tallyhorn
