// SPDX-License-Identifier: MIT
// ipodctl browse: lists the media on the iPod.
#include "commands.h"
#include "library/listing.h"
#include "library/session_library.h"

namespace ipodctl {

void RunBrowse(const Context& context, Session& session) {
  SessionLibrary library(session);
  ShowLibrary(context.options, context.output, library);
}

}  // namespace ipodctl
