// SPDX-License-Identifier: MIT
// How the iPod is talked to: what --conduct chooses, for both interfaces.
#pragma once

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/ipodserial.h"
#include "options.h"

namespace ipodctl {

/// Without --conduct robust on a port, and fast on a simulated iPod: whether a dock bears that is
/// for whoever owns it to find out.
tagIPOD_CONDUCT ConductOf(const Options& options);
/// The same for the legacy interface.
tagIPOD_LEGACY_CONDUCT LegacyConductOf(const Options& options);

}  // namespace ipodctl
