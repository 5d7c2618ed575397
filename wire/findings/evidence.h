// SPDX-License-Identifier: MIT
// What was seen of a session, as far as it explains how the session went.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "wire/conversation.h"
#include "wire/findings/damage.h"

namespace ipodwire {

/// Something that was seen once or more often: in how many packets, and in which first.
struct Sightings {
  static constexpr std::size_t kMostPackets = 4;

  std::uint64_t count = 0;
  std::vector<std::uint64_t> packets;

  void Add(std::uint64_t packet);
  /// Where it is one of the first.
  void Remove(std::uint64_t packet);
  explicit operator bool() const { return count > 0; }
};

/// A token or an announcement that the iPod did not accept.
struct Refusal {
  std::string what;
  std::string status;
  std::uint64_t packet = 0;
  bool unknown = false;  ///< because the iPod does not know the command
};

/// Counts and first places only: its size does not depend on how long the session was.
struct Evidence {
  std::uint32_t baud = 0;  ///< at which the line was heard; 0 where it is not known

  Sightings sent;      ///< frames to the iPod
  Sightings received;  ///< good frames of its own
  std::uint64_t bytes_received = 0;
  Sightings echoes;                                   ///< frames that came back as they were sent
  Sightings noise;                                    ///< received bytes that are no frame
  std::vector<std::vector<std::uint8_t>> noise_runs;  ///< the first of them
  Sightings damaged;                                  ///< received frames with bad checksums
  Damage damage;                                      ///< what these have in common
  Sightings damaged_sent;                             ///< frames to the iPod with bad checksums
  Sightings unfinished;                               ///< beginnings of frames, before others
  Sightings line_errors;                              ///< told by the driver
  std::optional<std::uint64_t> cut_frame;             ///< the packet, when it is the last that came
  std::optional<std::uint64_t> line_gone;

  Sightings start_without_identifier;
  Sightings start_with_identifier;
  Sightings silent_starts;  ///< that stayed unanswered
  std::optional<std::uint64_t> start_accepted;
  bool start_accepted_with_identifier = false;  ///< and never without
  bool start_disturbed = false;                 ///< bytes were damaged before it was accepted
  std::optional<Refusal> start_refused;
  std::vector<Refusal> refused_tokens;
  std::optional<Refusal> tokens_failed;  ///< the status with which the iPod ended them
  std::optional<Refusal> lingoes_refused;
  bool identified = false;
  bool identified_by_tokens = false;
  Sightings authentication;     ///< demands of the iPod
  Sightings identify_requests;  ///< demands to identify, once it had accepted us
  /// Versions by lingo, major and minor, with the packet that told them.
  std::map<std::uint8_t, std::pair<std::pair<unsigned, unsigned>, std::uint64_t>> versions;
  std::map<std::uint8_t, std::uint64_t> lingoes_without_version;

  Sightings late;
  Sightings left_out;              ///< questions that stayed unanswered, while others were answered
  bool left_out_in_haste = false;  ///< for some of them nobody waited as long as accessories do
  Sightings unasked;
  Sightings other_order;
  Sightings misshapen;  ///< good frames whose data do not fit their command
  Sightings refused;    ///< questions, with a status that has no meaning of its own here
  std::optional<Refusal> first_refusal;
  Sightings foreign_identifiers;  ///< answers under what no question had
  /// Answers under an earlier question's: that one's own, and very late, or this question's.
  Sightings earlier_identifiers;
  Sightings without_identifier;  ///< answers to questions that have one
  Sightings forgetful;           ///< of these, those of an iPod that had accepted our tokens
  Sightings not_authenticated;
  Sightings no_room;
  /// Questions since the iPod last said anything.
  Sightings unanswered;
};

/// Gathers the evidence, packet by packet.
class EvidenceCollector {
 public:
  /// What one side sent together, or an event of the line.
  void Add(const Told& told);
  /// At which rate the line is heard from now on. 0, for unknown, changes nothing.
  void set_baud(std::uint32_t baud) {
    if (baud != 0) evidence_.baud = baud;
  }

  Evidence evidence() const;

 private:
  void AddEvent(const Told& told);
  void AddSent(const Told& told);
  void AddReceived(const Told& told);
  void AddNoFrame(const Told& told);
  bool IsEcho(const Told& told);
  void AddRefusal(const DecodedFrame& frame, std::uint64_t packet);
  void NoticeSilence(const Told& told);
  void NoticeAnswer(const Told& told);
  void AddGeneral(const DecodedFrame& frame, std::uint64_t packet);
  void AddGeneralAck(const DecodedFrame& frame, std::uint64_t packet);
  void AddAcceptedStart(const DecodedFrame& frame, std::uint64_t packet);
  void AddTokenAcks(const DecodedFrame& frame, std::uint64_t packet);
  void AddStorageAck(const DecodedFrame& frame, std::uint64_t packet);

  Evidence evidence_;
  std::set<std::uint16_t> asked_under_;         // identifiers
  std::deque<std::vector<std::uint8_t>> sent_;  // the last, which may come back
  struct Silent {
    std::uint64_t question;
    Nanoseconds asked_at;
    bool passed_over = false;  // the iPod has said something else since
    bool in_time = true;       // when it last did, the answer could still have come
  };
  static void LeaveOut(const Silent& silent, Evidence* evidence);

  struct Asked {
    std::uint64_t question;
    Nanoseconds at;
  };
  std::deque<Silent> silent_;         // questions whose answers may still come
  std::deque<Asked> asked_;           // the last questions
  std::deque<std::uint64_t> starts_;  // StartIDPS among them
  std::uint8_t last_version_asked_ = 0;
};

}  // namespace ipodwire
