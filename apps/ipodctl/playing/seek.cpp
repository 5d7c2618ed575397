// SPDX-License-Identifier: MIT
// ipodctl seek: winds for a while.
#include "console/clock.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "playing/control.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

double MsSince(std::chrono::microseconds start) {
  return std::chrono::duration<double, std::milli>(SteadyTime() - start).count();
}

// Whether the player got further than time alone would have taken it.
bool HasWound(const NowPlaying& before, const NowPlaying& now, bool forward, double passed_ms) {
  if (now.index != before.index) return now.index.has_value();
  if (!forward) return now.position_ms < before.position_ms;
  return static_cast<double>(now.position_ms - before.position_ms) > 1.5 * passed_ms;
}

bool IsWinding(const NowPlaying& now) {
  return now.state != kStopped && now.state != kPlaying && now.state != kPaused;
}

// An iPod that was left winding would run through the whole list.
NowPlaying EndWinding(Session& session) {
  constexpr int kAttempts = 3;
  for (int attempt = 1;; ++attempt) {
    const Press end = PressButton(session, kEndWindingButton);
    const NowPlaying now = AwaitPlayer(
        session, [&end](const NowPlaying& seen) { return end.refused() || !IsWinding(seen); });
    if (!IsWinding(now)) return now;
    if (attempt == kAttempts) FailPress(session, end, "end winding", now);
  }
}

}  // namespace

void RunSeek(const Context& context, Session& session) {
  const bool forward = context.options.forward;
  const unsigned char winding = forward ? kWindingForward : kWindingBack;
  const std::string what = forward ? "wind forward" : "wind back";
  const NowPlaying before = LookAtPlayer(session);
  // Also after Ctrl-C: otherwise the iPod goes on winding.
  const ToTheEnd winding_ends(session.ctrl_c());
  const auto start = SteadyTime();
  const Press press = PressButton(session, forward ? kForwardButton : kBackButton);
  const bool seen_winding = !press.refused() && LookAtPlayer(session).state == winding;
  if (!press.accepted && !seen_winding) {
    FailPress(session, press, what, LookAtPlayer(session));
  }
  {
    StatusLine status;
    status.Show(forward ? "Winding forward ..." : "Winding back ...");
    const double left_ms = context.options.seek_seconds * 1000 - MsSince(start);
    PauseMs(left_ms > 0 ? static_cast<unsigned>(left_ms) : 0);
  }
  NowPlaying now = EndWinding(session);
  if (!seen_winding && !HasWound(before, now, forward, MsSince(start))) {
    FailPress(session, press, what, now);
  }
  ReadTexts(session, &now);
  ShowNowPlaying(context.output, now);
}

}  // namespace ipodctl
