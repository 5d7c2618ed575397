// SPDX-License-Identifier: MIT
// Where the line cannot be recorded it cannot be shown either.
#include "wire/live_lines.h"

namespace ipodctl {

void ShowLineLive() {}

}  // namespace ipodctl
