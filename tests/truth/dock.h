// SPDX-License-Identifier: MIT
// The dock that a simulated iPod stands in: it passes frames on, does one trouble to them, and
// keeps account of what the accessory can know.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "simulator/simulated_ipod.h"
#include "simulator/wire/frame.h"
#include "trouble.h"
#include "world/line/serial_device.h"

namespace truth {

/// A refusal that was sent to the accessory.
struct Refusal {
  unsigned after = 0;  // so many requests
  std::uint8_t lingo = 0;
  std::uint16_t command = 0;
  std::uint8_t status = 0;
};

/// What passed the dock.
struct Account {
  unsigned requests = 0;    // whole frames from the accessory
  unsigned answers = 0;     // whole frames to it
  bool struck = false;      // the trouble happened
  bool noticeable = false;  // to a frame that the accessory waits for, or with which it asks
  bool cut_off = false;     // the iPod was away, or is
  std::int64_t longest_delay_us = 0;  // of an answer
  /// What the player did before the iPod went away, which pauses it.
  std::optional<ipodsim::PlayerState> state_before;
  /// A damaged frame whose checksum holds: nobody can tell it from a good one.
  bool checksum_held = false;
  std::int64_t last_request_us = 0;
  std::int64_t last_answer_us = 0;
  std::vector<Refusal> refusals;
};

/// Whether any part of what arrives reads as a frame, its checksum included, that is none of
/// `good`.
bool HoldsAnotherFrame(const ipodsim::Bytes& arriving, const std::vector<ipodsim::Bytes>& good);

class Dock : public ipodcomm::virtual_platform::SerialDevice {
 public:
  /// @param place the frame that a trouble strikes which happens once, counted from 1 in its
  ///   direction, after the accessory's first byte
  Dock(ipodsim::SimulatedIpod& ipod, const Trouble& trouble, unsigned place, std::uint64_t seed);

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override;
  std::optional<std::int64_t> NextEvent() override;
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override;

  const Account& account() const { return account_; }

 private:
  using Bytes = ipodsim::Bytes;

  void OnRequest(const ipodsim::Frame& frame, const Bytes& wire);
  bool MeddleWithRequest(const ipodsim::Frame& frame);
  void CutOff();
  void OnAnswer(const ipodsim::Frame& frame, const Bytes& wire);
  void Meddle(const ipodsim::Frame& frame, Bytes wire);
  bool Strikes(unsigned number);
  Bytes Shortened(ipodsim::Frame frame);
  Bytes Acknowledgement(const ipodsim::Frame& frame, std::uint8_t status, bool with_time);
  void Send(std::int64_t due_us, Bytes wire);
  void NoteDelivered(const Bytes& wire);
  void NoteRefusal(const ipodsim::Frame& frame);
  std::size_t Drawn(std::size_t limit);

  ipodsim::SimulatedIpod& ipod_;
  const Trouble& trouble_;
  unsigned place_;
  ipodsim::Random random_;
  ipodsim::FrameReader requests_;
  ipodsim::FrameReader answers_;
  ipodsim::FrameReader delivered_;
  ipodsim::FrameReader patiently_;  // the same, by a reader that waits for the rest of any frame
  Account account_;
  unsigned answers_seen_ = 0;
  std::int64_t now_us_ = 0;
  std::int64_t held_until_us_ = 0;
  std::optional<Bytes> swapped_;   // waits for the frame that overtakes it
  std::optional<Bytes> repeated_;  // comes again behind the next request
  bool damaged_ = false;           // bytes of a frame; from then on both of these are kept
  Bytes arriving_;
  std::vector<Bytes> good_;
  std::optional<std::pair<std::uint8_t, std::uint16_t>> always_refused_;
  std::optional<std::int64_t> back_us_;  // when a restarted iPod is there again
  std::multimap<std::int64_t, Bytes> outgoing_;
};

}  // namespace truth
