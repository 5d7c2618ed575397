// SPDX-License-Identifier: MIT
// The screen where the program is built without one.
#include "console/failure.h"
#include "screen/console.h"

namespace ipodctl {

void RunConsole(const Context& /*context*/) {
  throw CommandFailure(kFailed,
                       "this build of ipodctl has no screen, which needs Linux and its ncurses; "
                       "'ipodctl now --follow' and 'ipodctl workout' print lines");
}

}  // namespace ipodctl
