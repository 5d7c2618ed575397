// SPDX-License-Identifier: MIT
// ipodctl browse: lists the media on the iPod, through either interface.
#pragma once

#include "context.h"
#include "ipod/legacy_session.h"
#include "ipod/session.h"

namespace ipodctl {

/// Shows the records that the options' path leads to; without a path how many each category has.
void RunBrowse(const Context& context, Session& session);
void RunLegacyBrowse(const Context& context, LegacySession& session);

}  // namespace ipodctl
