// SPDX-License-Identifier: MIT
// ipodctl next and previous: skips once, and only once.
#include "ipodcomm/ipod.h"
#include "playing/control.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

constexpr int kPresses = 3;
// Going back to a track's start shows as a position near it.
constexpr std::uint64_t kNearStartMs = 1500;

// One attempt: asked twice the iPod would skip twice.
Press PressOnce(Session& session, unsigned char button) {
  const tagIPOD_WRITE_PARAMS press = {ipod::IPOD_COMMAND_PLAYCONTROL, ipod::IPOD_LINGO_EXTENDED,
                                      &button, 1};
  const auto ack = session.Exchange(press, ipod::IPOD_COMMAND_EXTENDEDACK, 1);
  return {ack.has_value(), session.Last()};
}

bool AtStart(const NowPlaying& before, const NowPlaying& now) {
  return now.index == before.index && now.position_ms < kNearStartMs;
}

bool Moved(const NowPlaying& before, const NowPlaying& now) {
  return now.state != before.state || now.index != before.index ||
         (AtStart(before, now) && now.position_ms < before.position_ms);
}

// Whether `now` is where one skip leads to. Behind a list's end its other end follows.
bool IsNeighbour(Session& session, const NowPlaying& before, const NowPlaying& now, bool forward) {
  if (!before.index || !now.index) return false;
  if (AtStart(before, now)) return !forward || CountPlayingTracks(session) == 1;
  const unsigned long from = forward ? *before.index : *now.index;
  const unsigned long to = forward ? *now.index : *before.index;
  if (to == from + 1) return true;
  return to == 0 && CountPlayingTracks(session) == from + 1;
}

}  // namespace

NowPlaying Skip(Session& session, bool forward) {
  const std::string what = forward ? "skip" : "skip back";
  const NowPlaying before = LookAtPlayer(session);
  for (int attempt = 1;; ++attempt) {
    const Press press = PressOnce(session, forward ? kNextButton : kPreviousButton);
    NowPlaying now = AwaitPlayer(
        session, [&](const NowPlaying& seen) { return press.refused() || Moved(before, seen); });
    const bool moved = Moved(before, now);
    if ((moved || press.accepted) && IsNeighbour(session, before, now, forward)) return now;
    // The command was lost, and not its answer.
    const bool lost = press.exchange.result == IPOD_EXCHANGE_UNANSWERED && !moved;
    if (!lost || attempt == kPresses) FailPress(session, press, what, now);
  }
}

void RunSkip(const Context& context, Session& session) {
  NowPlaying now = Skip(session, context.options.command == "next");
  ReadTexts(session, &now);
  ShowNowPlaying(context.output, now);
}

}  // namespace ipodctl
