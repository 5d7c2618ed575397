// SPDX-License-Identifier: MIT
// The thread of the screen: it draws, takes keys, and never waits for the iPod.
#include "screen/console.h"

#include <memory>
#include <utility>

#include "console/clock.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/system.h"
#include "screen/held_errors.h"
#include "screen/screen.h"
#include "screen/session_thread.h"
#include "screen/terminal.h"
#include "workout/workout.h"

namespace ipodctl {

namespace {

using screen::HeldErrors;
using screen::Input;
using screen::Screen;
using screen::SessionThread;
using screen::Snapshot;
using screen::Terminal;
using screen::WorkoutSnapshot;

constexpr std::chrono::milliseconds kTurn(50);

void RequireTerminal(std::FILE* output) {
  if (output == stderr) {
    throw CommandFailure(kUsage,
                         "the screen needs standard output, which is not free; record the line in "
                         "a file with --capture FILE");
  }
  if (IsTerminal(stdin) && IsTerminal(output)) return;
  throw CommandFailure(kUsage,
                       "the screen needs a terminal, for keys as standard input and to show it as "
                       "standard output; 'ipodctl now --follow' and 'ipodctl workout' print lines");
}

void Take(const Input& input, const Snapshot& snapshot, Screen* screen) {
  if (input.key) screen->Press(*input.key, snapshot);
  if (input.click) screen->Click(input.click->row, input.click->column, snapshot);
  if (input.wheel_down) screen->Scroll(*input.wheel_down, snapshot);
}

void ShowScreen(Terminal& terminal, SessionThread& session) {
  Screen screen([&session](screen::Wish wish) { session.Ask(std::move(wish)); });
  while (!screen.left() && !Interrupted() && terminal.is_there()) {
    const std::shared_ptr<const Snapshot> snapshot = session.Look();
    terminal.Show(screen.Draw(*snapshot, terminal.rows(), terminal.columns(), SteadyTime()));
    session.LookAt(screen.view());
    Take(terminal.Read(kTurn), *snapshot, &screen);
  }
}

void ShowOutcome(const WorkoutSnapshot& workout, const Context& context) {
  if (workout.state == WorkoutSnapshot::State::kFailed) {
    throw CommandFailure(kFailed, workout.outcome);
  }
  if (workout.state != WorkoutSnapshot::State::kSaved) return;
  context.output.Line(workout.outcome);
  const auto& simulation = context.options.simulation;
  if (simulation && simulation->storage_folder.empty()) {
    context.output.Line("That memory is gone now; --storage DIR keeps files.");
  }
}

}  // namespace

// The terminal is given back before the session is left, which may take its time.
void RunConsole(const Context& context) {
  RequireTerminal(context.output.stream());
  auto recording = std::make_shared<const Recording>(RecordingFor(context.options.workout));
  auto held = std::make_unique<HeldErrors>();
  auto terminal = std::make_unique<Terminal>(context.output.stream());
  SessionThread session(context.options, context.dock, std::move(recording));
  ShowScreen(*terminal, session);
  const bool interrupted = Interrupted();
  terminal.reset();
  held.reset();
  if (session.Look()->workout.state == WorkoutSnapshot::State::kRunning) {
    context.output.Line("Ending the workout ...");
  }
  session.Leave();
  ShowOutcome(session.Look()->workout, context);
  if (interrupted) StopIfInterrupted();
}

}  // namespace ipodctl
