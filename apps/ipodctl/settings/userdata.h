// SPDX-License-Identifier: MIT
// ipodctl userdata: shows what the iPod knows about its user, and sets the weight.
#pragma once

#include "context.h"
#include "ipod/session.h"

namespace ipodctl {

void RunUserdata(const Context& context, Session& session);

}  // namespace ipodctl
