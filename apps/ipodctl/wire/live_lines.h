// SPDX-License-Identifier: MIT
// What goes over the line, printed on standard error while it does.
#pragma once

namespace ipodctl {

/// Prints what the library records from now on until the process ends. A recording that was asked
/// for is made all the same. Does nothing where the line cannot be recorded.
void ShowLineLive();

}  // namespace ipodctl
