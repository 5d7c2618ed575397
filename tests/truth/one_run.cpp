// SPDX-License-Identifier: MIT
// Makes the world, docks the iPod and runs the command as the program's main does.
#include "one_run.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "command_line/command_line.h"
#include "console/failure.h"
#include "console/interrupt.h"
#include "console/output.h"
#include "context.h"
#include "run.h"
#include "wiretap.h"
#include "world/world.h"

namespace truth {

namespace {

using ipodcomm::virtual_platform::Deadlock;
using ipodcomm::virtual_platform::World;

// The player is more than three seconds into its track then, whatever the command does first.
constexpr std::int64_t kBefore = 4 * ipodcomm::virtual_platform::kSecond;

// Another accessory identified, chose all tracks and played one, and left. An iPod that refuses now
// and then is told again.
void Prepare(ipodsim::SimulatedIpod& ipod, Start start) {
  if (start == Start::kStopped) return;
  const auto tell = [&ipod](const ipodsim::Frame& frame) {
    const ipodsim::Bytes wire = ipodsim::BuildFrame(frame);
    ipod.Receive(wire.data(), wire.size(), 0);
  };
  constexpr int kAttempts = 10;
  const ipodsim::Player& player = ipod.player();
  for (int attempt = 0; attempt < kAttempts && player.index() != kFirstTrack; ++attempt) {
    tell({ipodsim::kGeneral,
          ipodsim::general::kIdentifyDeviceLingoes,
          {0, 0, 0, 0x1D, 0, 0, 0, 0, 0, 0, 0, 0}});
    tell({ipodsim::kGeneral, ipodsim::general::kEnterRemoteUiMode, {}});
    tell({ipodsim::kExtended, ipodsim::extended::kResetDbSelection, {}});
    tell({ipodsim::kExtended, ipodsim::extended::kPlayCurrentSelection, {0, 0, 0, kFirstTrack}});
  }
  const auto is_paused = [&] { return player.state() == ipodsim::PlayerState::kPaused; };
  for (int attempt = 0; attempt < kAttempts && start == Start::kPaused && !is_paused(); ++attempt) {
    tell({ipodsim::kExtended, ipodsim::extended::kPlayControl, {1}});
  }
  ipod.LoseAccessory(0);
}

}  // namespace

// The program's own way from its arguments to its exit status.
Outcome RunProgram(const std::vector<std::string>& arguments) {
  Outcome outcome;
  const ipodctl::CommandLine line = ipodctl::ParseCommandLine(arguments);
  if (!line.options) return {line.status, "", line.text, 0, false};
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* const stream = open_memstream(&text, &size);
  {
    ipodctl::Output output(stream, line.options->json);
    ipodctl::DockLine dock(*line.options);
    ipodctl::CatchInterrupts();
    try {
      ipodctl::RunCommand({*line.options, dock, output});
      outcome.status = ipodctl::kSuccess;
    } catch (const ipodctl::CommandFailure& failure) {
      outcome.status = failure.status();
      outcome.message = failure.what();
    } catch (const Deadlock& deadlock) {
      outcome.deadlocked = true;
      outcome.message = deadlock.what();
    }
  }
  std::fclose(stream);
  outcome.out.assign(text, size);
  std::free(text);
  return outcome;
}

Finished Run(const Case& run, bool trace,
             const std::function<void(const Finished&, const ipodsim::SimulatedIpod&,
                                      std::int64_t now_us)>& look) {
  ipodsim::SimulatedIpod ipod(run.settings());
  Prepare(ipod, run.scene->start);
  if (trace) {
    ipod.set_trace([](const ipodsim::TraceLine& line) {
      std::fprintf(stderr, "%s\n", ipodsim::Format(line).c_str());
    });
  }
  Dock dock(ipod, *run.trouble, run.place, run.seed);
  Wiretap line(dock, trace);
  World world({run.seed});
  world.line().Plug(line);
  Finished finished;
  world.Advance(kBefore);
  finished.outcome = RunProgram(run.arguments());
  finished.outcome.seconds = static_cast<double>(world.now_us() - kBefore) / 1e6;
  finished.account = dock.account();
  finished.findings = line.Findings();
  look(finished, ipod, world.now_us());
  world.line().Unplug();
  return finished;
}

}  // namespace truth
