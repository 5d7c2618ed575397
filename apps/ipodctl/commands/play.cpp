// SPDX-License-Identifier: MIT
// ipodctl play: starts a track, or goes on with what was playing.
#include "categories.h"
#include "commands/commands.h"
#include "errors.h"
#include "library_walk.h"
#include "now_playing.h"

namespace ipodctl {

namespace {

constexpr unsigned char kPlay = 10;
constexpr unsigned char kPlaying = 1;

void PlayPath(const Options& options, Session& session) {
  LibraryWalk walk(session, options.hierarchy);
  std::vector<std::string> records(options.path.begin() + 1, options.path.end());
  walk.EnterTop(CategoryByName(options.path.front())->code);
  unsigned long track = 0;
  for (const std::string& record : records) {
    if (walk.category() == kTracks) {
      if (&record != &records.back()) {
        throw CommandFailure(kUsage, "'" + record + "' is a track, and nothing can follow it");
      }
      track = walk.Find(record);
    } else {
      walk.EnterRecord(record, CategoryByCode(walk.category()).next);
    }
  }
  if (walk.category() != kTracks) walk.ListTracks();
  if (walk.count() == 0) throw CommandFailure(kFailed, "there are no tracks to play here");
  walk.PlayTrack(track);
}

}  // namespace

void RunPlay(const Context& context, Session& session) {
  if (context.options.path.empty()) {
    session.Require(session.ipod().Command_PlayControl(kPlay) != 0, "play; name what to play");
  } else {
    PlayPath(context.options, session);
  }
  ShowNowPlaying(context.output, WaitForState(session, kPlaying));
}

}  // namespace ipodctl
