// SPDX-License-Identifier: MIT
// The simulated iPod of --simulated, docked inside this program on a real pseudo-terminal.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "options.h"

namespace ipodctl {

/// What a simulated iPod can be; nothing on a system that has no pseudo-terminals.
struct SimulationNames {
  std::vector<std::string> profiles;
  std::vector<std::string> habits;
  std::vector<std::string> faults;
};
SimulationNames NamesForSimulation();

class SimulatedIpod {
 public:
  /// Throws a CommandFailure for an unknown profile, habit or fault, an unusable library file, or
  /// on a system that has no pseudo-terminals.
  explicit SimulatedIpod(const SimulationOptions& options);
  ~SimulatedIpod();
  SimulatedIpod(const SimulatedIpod&) = delete;
  SimulatedIpod& operator=(const SimulatedIpod&) = delete;

  /// The terminal's other end.
  std::string device() const;
  /// The newest of the files that it was given: its path, or its name alone when the files are in
  /// memory. Empty when there is none.
  std::string NewestFile() const;
  /// Ends it. @return one sentence for each protocol mistake that it saw
  std::vector<std::string> Stop();

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

}  // namespace ipodctl
