// SPDX-License-Identifier: MIT
// ipodctl seek: winds for a while.
#include "console/interrupt.h"
#include "console/progress.h"
#include "playing/control.h"
#include "playing/now.h"

namespace ipodctl {

void RunSeek(const Context& context, Session& session) {
  const bool forward = context.options.forward;
  CIpodComm& ipod = session.ipod();
  session.Require(ipod.Command_PlayControl(forward ? kForwardButton : kBackButton) != 0,
                  "wind; nothing may be playing");
  {
    StatusLine status;
    status.Show(forward ? "Winding forward ..." : "Winding back ...");
    PauseMs(static_cast<unsigned>(context.options.seek_seconds * 1000));
  }
  // Also after Ctrl-C: otherwise the iPod goes on winding.
  session.Require(ipod.Command_PlayControl(kEndWindingButton) != 0, "end winding");
  ShowNowPlaying(context.output, ReadNowPlaying(session));
}

}  // namespace ipodctl
