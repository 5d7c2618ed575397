// SPDX-License-Identifier: MIT
// The table of keys.
#include "screen/keys.h"

#include <algorithm>

namespace ipodctl::screen {

const std::vector<KeyBinding>& AllKeys() {
  static const std::vector<KeyBinding> kAll = {
      {Action::kUp, {kKeyUp, U'k'}, "↑ k", "", "", "one line up"},
      {Action::kDown, {kKeyDown, U'j'}, "↓ j", "", "", "one line down"},
      {Action::kPageUp, {kKeyPageUp}, "PgUp", "", "", "a page up"},
      {Action::kPageDown, {kKeyPageDown}, "PgDn", "", "", "a page down"},
      {Action::kFirst, {kKeyHome, U'g'}, "Home g", "", "", "to the first line"},
      {Action::kLast, {kKeyEnd, U'G'}, "End G", "", "", "to the last line"},
      {Action::kOpen,
       {kKeyEnter, kKeyRight, U'l'},
       "Enter → l",
       "Enter",
       "open",
       "open it; play a track"},
      {Action::kBack, {kKeyLeft, kKeyBackspace, U'h'}, "← h", "←", "back", "back out of it"},
      {Action::kPlayPause, {U' '}, "Space", "Space", "play/pause", "play or pause"},
      {Action::kNext, {U'n'}, "n", "n", "next", "the next track"},
      {Action::kPrevious, {U'p'}, "p", "p", "previous", "this track's start, or the one before"},
      {Action::kStop, {U's'}, "s", "", "", "stop playing"},
      {Action::kStartWorkout, {U'w'}, "w", "w", "workout", "start a workout"},
      {Action::kEndWorkout, {U'e'}, "e", "e", "end it", "end the workout and save it"},
      {Action::kHelp, {U'?', kKeyF1}, "? F1", "?", "help", "these keys"},
      {Action::kQuit, {U'q'}, "q", "q", "quit", "end a workout, and leave"},
  };
  return kAll;
}

Action ActionOf(char32_t key) {
  for (const KeyBinding& binding : AllKeys()) {
    if (std::find(binding.keys.begin(), binding.keys.end(), key) != binding.keys.end()) {
      return binding.action;
    }
  }
  return Action::kNone;
}

}  // namespace ipodctl::screen
