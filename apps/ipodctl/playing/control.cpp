// SPDX-License-Identifier: MIT
// ipodctl pause, stop, next and previous: one button each.
#include "commands.h"
#include "playing/now_playing.h"

namespace ipodctl {

namespace {

struct Button {
  const char* command;
  unsigned char code;
  const char* what;
};

constexpr Button kButtons[] = {
    {"pause", 11, "pause; nothing may be playing"},
    {"stop", 2, "stop"},
    {"next", 3, "skip; nothing may be playing"},
    {"previous", 4, "skip back; nothing may be playing"},
};

}  // namespace

void RunPlayControl(const Context& context, Session& session) {
  for (const Button& button : kButtons) {
    if (context.options.command != button.command) continue;
    session.Require(session.ipod().Command_PlayControl(button.code) != 0, button.what);
  }
  ShowNowPlaying(context.output, ReadNowPlaying(session));
}

}  // namespace ipodctl
