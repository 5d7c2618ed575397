// SPDX-License-Identifier: MIT
// ipodctl --legacy browse: lists the media on the iPod.
#include "legacy_commands.h"
#include "library/legacy_library.h"
#include "library/listing.h"

namespace ipodctl {

void RunLegacyBrowse(const Context& context, LegacySession& session) {
  LegacyLibrary library(session);
  ShowLibrary(context.options, context.output, library);
}

}  // namespace ipodctl
