// SPDX-License-Identifier: MIT
// The ground of the identification tests: a session that is to be identified, and the answers of an
// iPod that takes tokens or lingoes. An answer that a test scripts first goes before these.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/packets.h"
#include "support/session_test.h"

namespace test {

/// A frame from its lingo on: "00 38" is "FF 55 02 00 38 C6". Length and checksum are the tests'
/// own sums.
std::string Frame(std::string_view body);
/// The same with a transaction identifier between the command's single byte and the data.
std::string Frame(std::string_view command, std::uint16_t id, std::string_view data);

/// `count` times the same byte.
std::string Repeated(std::string_view byte, std::size_t count);

// Announcements of lingoes at low power, as the only token of their packet.
constexpr const char* kAnnounceWithSports = "01 10 00 00 05 00 03 09 0C 04 00 00 00 00 00 00 00 00";
constexpr const char* kAnnounceWithoutSports = "01 0E 00 00 03 00 03 04 00 00 00 00 00 00 00 00";
constexpr const char* kAnnounceGeneralThrice =
    "01 12 00 00 07 00 03 09 0C 04 00 00 00 00 00 00 00 00 00 00";
constexpr const char* kAnnounceGeneralThriceWithoutSports =
    "01 10 00 00 05 00 03 04 00 00 00 00 00 00 00 00 00 00";

// IdentifyDeviceLingoes at low power.
constexpr const char* kIdentifyGeneralOnly = "00 13 00 00 00 01 00 00 00 00 00 00 00 00";
constexpr const char* kIdentifyLingoes = "00 13 00 00 00 19 00 00 00 00 00 00 00 00";
constexpr const char* kIdentifyLingoesWithSports = "00 13 00 00 12 19 00 00 00 00 00 00 00 00";
constexpr const char* kIdentified = "00 02 00 13";

constexpr const char* kStart = "00 38";
constexpr const char* kStartTaken = "00 02 00 38";
constexpr const char* kStartRefused = "00 02 04 38";

/// The token packet that follows the announcement, from its count byte on, with a model number as
/// hexadecimal text; the host executable's version is 2.5.
std::string Tokens(std::string_view model);

class Identification : public SessionTest {
 protected:
  /// Tokens are enabled; the host executable's version is 2.5.
  Identification();

  /// Identifies; `result_` gets the outcome. `on_step_` sees each call of the callback, counted
  /// from 1, and the callback says stop at the call `stop_at_`.
  int Identify(int flag = 0);

  /// Answers a request without an identifier; both from the lingo on.
  void Reply(std::string_view request, std::string_view reply, std::int64_t delay_us = 0);
  /// Answers a request whatever its identifier, which the reply repeats.
  void ReplyWithId(std::string_view request, std::string_view reply);
  /// The request stays unanswered.
  void Ignore(std::string_view request) { Answer(Frame(request), ""); }
  void IgnoreWithId(std::string_view request);

  // Tokens.
  void AnswerOptions();  ///< payload size and options; Sports and the Extended option are there
  void AcceptTokens(std::string_view model = "");
  void EndWith(std::string_view status);
  void AnswerEventsWithId();
  void DockTokenIpod();

  // Lingoes.
  void AnswerVersion(std::string_view lingo, std::string_view version);
  void AnswerVersions();  ///< 1.09, 1.05, 1.14, 1.01, 1.02
  void AcceptPreferences();
  void AnswerEvents();
  void AcceptLingoes();  ///< all that follows on a refused StartIDPS
  void DockLingoIpod();

  /// What the last Identify did on the host's thread: pauses, waits and writes in their order,
  /// without the handle: "Sleep(100)", "WriteFile(FF)", "WaitForSingleObject(1000)".
  std::vector<std::string> DrainHostCalls();
  /// Sent frames that carry a given command ("00 0F"), as text.
  std::vector<std::string> DrainSentOf(std::string_view command);

  tagIPOD_IDENTIFY_RESULT result_ = IPOD_IDENTIFY_RESULT_NONE;
  int steps_ = 0;
  int stop_at_ = 0;  // 0: never
  std::function<void(int)> on_step_;

 private:
  static bool KeepGoing(void* context);
};

}  // namespace test
