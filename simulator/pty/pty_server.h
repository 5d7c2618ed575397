// SPDX-License-Identifier: MIT
// Serves a simulated iPod on a pseudo-terminal, as good as a dock on a serial port.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/simulated_ipod.h"

namespace ipodsim {

/// Who sent bytes over a line.
enum class LineEnd { kAccessory, kIpod };

/// All operations may be called from any thread. The other side may close the device and open it
/// again at will; what the iPod says meanwhile is lost, as on a real port. While the iPod is
/// unplugged the device does not exist; plugged in again it may have another path, which the link,
/// if there is one, follows.
class PtyServer {
 public:
  using Tap = std::function<void(LineEnd sender, const std::vector<std::uint8_t>& bytes)>;

  /// The link is a symbolic link to make, empty for none. A link that was left behind at its place
  /// is replaced; one that leads to a device is in use and left alone, like anything else.
  /// @param baud speed of the line in bits a second, in both directions, at 10.5 bits a byte; 0 for
  /// none: bytes then take no time
  explicit PtyServer(Settings settings, std::string link = {}, std::uint32_t baud = 0);
  /// Stops.
  ~PtyServer();
  PtyServer(const PtyServer&) = delete;
  PtyServer& operator=(const PtyServer&) = delete;

  /// Called from the server's own thread; to be set before Start.
  void set_trace(std::function<void(const TraceLine&)> trace);

  /// Called from the server's own thread with what went over the terminal; to be set before Start.
  void set_tap(Tap tap);

  /// False when the pseudo-terminal or the link could not be made; error() then says why.
  bool Start();
  /// Ends the thread, takes the device and the link away and returns the accessory's mistakes.
  std::vector<Mistake> Stop();
  std::string error() const;

  /// What to open: the link when there is one, else the terminal itself, empty while unplugged.
  std::string device_path() const;
  std::vector<Mistake> mistakes() const;

  void Unplug();
  void Replug();

  /// Looks at the iPod while the server holds still.
  void Inspect(const std::function<void(const SimulatedIpod&)>& look) const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ipodsim
