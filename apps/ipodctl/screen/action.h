// SPDX-License-Identifier: MIT
// What a key or a click asks for.
#pragma once

namespace ipodctl::screen {

enum class Action {
  kNone,
  // In the library.
  kUp,
  kDown,
  kPageUp,
  kPageDown,
  kFirst,
  kLast,
  kOpen,
  kBack,
  kPointAt,  // at a record, which a click names
  // Of the player.
  kPlayPause,
  kNext,
  kPrevious,
  kStop,
  // Of the workout.
  kStartWorkout,
  kEndWorkout,
  // Of the screen.
  kHelp,
  kQuit,
};

}  // namespace ipodctl::screen
