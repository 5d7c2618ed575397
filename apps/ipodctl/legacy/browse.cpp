// SPDX-License-Identifier: MIT
// ipodctl --legacy browse: lists the media on the iPod.
#include "legacy/legacy_commands.h"
#include "legacy/legacy_library.h"
#include "library_listing.h"

namespace ipodctl {

void RunLegacyBrowse(const Context& context, LegacySession& session) {
  LegacyLibrary library(session);
  ShowLibrary(context.options, context.output, library);
}

}  // namespace ipodctl
