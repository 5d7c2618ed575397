// SPDX-License-Identifier: MIT
// What the screen leaves for the session's thread to do.
#pragma once

#include <functional>
#include <string>

#include "screen/docked_ipod.h"

namespace ipodctl::screen {

struct Wish {
  std::string doing;  // the rest of "waiting for the iPod: ..."
  std::function<void(DockedIpod& ipod)> carry_out;
};

}  // namespace ipodctl::screen
