// SPDX-License-Identifier: MIT
// A session with the docked iPod: opened, identified, and with failures that say what to do.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ipod/ctrl_c.h"
#include "ipod/dock_line.h"
#include "ipodcomm/CIpodComm.h"
#include "options.h"

namespace ipodctl {

class Session {
 public:
  /// Opens the port. Throws a CommandFailure when it cannot be.
  Session(const Options& options, const DockLine& dock);
  /// Closes the port.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Identifies the accessory to the iPod, which lasts some seconds. Throws a CommandFailure when
  /// no iPod answers, when it is too old, or when it refuses.
  /// @param until by the steady clock: when to give up while nothing has answered
  void Identify(std::chrono::microseconds until = std::chrono::microseconds::max());
  /// Lets the iPod show that it is controlled from outside; browsing and playing need it.
  void EnterRemoteUi();
  void Close() { ipod_.Close(); }

  CIpodComm& ipod() { return ipod_; }
  /// A lingo's version, asked for once at most; none when the iPod refused to tell it.
  /// Throws a CommandFailure when it does not answer.
  std::optional<tagIPOD_VERSION> LingoVersion(unsigned char lingo) { return Told(lingo).version; }
  /// The status with which it refused to tell it; none when it was told.
  std::optional<std::uint8_t> LingoRefusal(unsigned char lingo) { return Told(lingo).refusal; }
  /// Whether the iPod said that it does not know the lingo. One that refuses for another reason may
  /// have it.
  bool LacksLingo(unsigned char lingo);
  /// How the iPod accepted the accessory: "tokens" or "lingoes".
  std::string IdentifiedBy() const;

  /// Exchanges any command, where no operation of the library does.
  /// @param attempts 1 for a command that must not be carried out twice
  /// @return the answer's data; none when the iPod refused or stayed silent (see Last)
  std::optional<std::vector<unsigned char>> Exchange(const tagIPOD_WRITE_PARAMS& command,
                                                     std::uint16_t answer, int attempts = 3);
  /// Exchanges a question until the answer is whole, where the library does not look.
  /// @param whole whether an answer's data are
  /// @param about "the weight": what is asked about
  /// @return the data; none when the iPod refused. Throws a CommandFailure when it stays silent, or
  /// cuts its answers short.
  std::optional<std::vector<unsigned char>> ExchangeWhole(
      const tagIPOD_WRITE_PARAMS& question, std::uint16_t answer,
      bool (*whole)(const std::vector<unsigned char>& data), const std::string& about);
  /// What came of the command sent last.
  tagIPOD_EXCHANGE Last();
  bool WasRefused() { return Last().result == IPOD_EXCHANGE_REFUSED; }

  /// Throws a CommandFailure unless `succeeded`: with the status when the iPod refused the command
  /// sent last, and otherwise when it no longer answers at all, or not to this.
  /// @param what the rest of "the iPod refused to ..."; what follows a ';' is advice
  void Require(bool succeeded, const std::string& what);
  /// The failure of a command that was answered by `exchange`. Throws always.
  [[noreturn]] void Fail(const tagIPOD_EXCHANGE& exchange, const std::string& what);
  /// Throws a CommandFailure when the iPod no longer answers at all.
  void RequireAnswers();
  /// Whether there is still an iPod.
  bool Answers();
  /// Ctrl-C's say in what is asked.
  CtrlC& ctrl_c() { return ctrl_c_; }

  /// Whether it is of use to ask what a track can do. An iPod that has refused once is not asked
  /// again.
  bool tells_track_info() const { return tells_track_info_; }
  void NoteNoTrackInfo() { tells_track_info_ = false; }

 private:
  struct ToldVersion {
    std::optional<tagIPOD_VERSION> version;
    std::optional<std::uint8_t> refusal;
  };

  [[noreturn]] void FailIdentification();
  const ToldVersion& Told(unsigned char lingo);
  void NoteVersions();

  const Options& options_;
  const DockLine& dock_;
  CIpodComm ipod_;
  CtrlC ctrl_c_;
  tagIPOD_IDENTIFY_RESULT identified_ = IPOD_IDENTIFY_RESULT_NONE;
  std::map<unsigned char, ToldVersion> versions_;  // of the lingoes asked about
  bool tells_track_info_ = true;
};

}  // namespace ipodctl
