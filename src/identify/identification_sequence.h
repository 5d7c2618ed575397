// SPDX-License-Identifier: MIT
// One run of the identification sequence.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "identify/file_version.h"
#include "identify/token_packet.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/IpodTypes.h"
#include "session/keep_going.h"

/// Makes the iPod accept the accessory.
///
///   wake up, StartIDPS (3 attempts) --- accepted --> tokens, EndIDPS --- status 0 --> identified
///        |  IDPS disabled, refused                        |  failed
///        v                                                v
///   IdentifyDeviceLingoes (General) -> lingo version survey -> IdentifyDeviceLingoes -> identified
///
/// Runs on the host's thread, which may stop it between the steps.
class IPODCOMM_INNER CIpodComm::IdentificationSequence {
 public:
  /// @param result optional; holds the outcome so far at every call of `keep_going`
  IdentificationSequence(CIpodComm& session, int flag, tagIPOD_IDENTIFY_RESULT* result,
                         bool (*keep_going)(void* context), void* context);

  /// @return non-zero when the accessory is identified
  int Run();

 private:
  friend struct IdentificationSequencePeer;  // the tests' look inside

  /// How a phase ended.
  enum class Outcome {
    kDone,       // the sequence goes on with the next phase of its branch
    kFallBack,   // the iPod does not accept tokens: go on with IdentifyDeviceLingoes
    kAbandoned,  // stopped by the host, or failed for good
  };
  /// What the versions of the iPod's lingoes say.
  enum class VersionVerdict { kSuffice, kTooOld, kUnknown };
  /// What the iPod answers about a lingo: its number and eight option bytes.
  struct LingoOptions {
    bool exchanged;
    bool refused;  // an ACK came in their place
    unsigned char reply[9];

    bool OptionSet() const { return (reply[8] & 0x02) != 0; }
  };
  /// The lingoes to announce, in their order.
  struct Lingoes {
    void Add(unsigned char lingo) { numbers[count++] = lingo; }

    unsigned char numbers[7];
    std::size_t count;
  };
  /// One token to be sent, before its bytes are written.
  struct Token {
    enum class Kind {
      kLingoes,
      kCapabilities,
      kText,
      kVersion,
      kMaxPayload,
      kCertification,
      kPreference
    };

    Kind kind;
    unsigned char number = 0;   // kind of information, or class of preference
    unsigned char setting = 0;  // of a preference
    std::string_view text = {};
  };
  static constexpr std::size_t kTokens = 16;
  using TokenList = std::array<Token, kTokens>;

  int RunBranches();
  Outcome RunTokens();
  static bool AskBoth(void* sequence);
  bool KeepGoing();
  bool Stopped() const { return keep_going_.stopped(); }
  void SetResult(tagIPOD_IDENTIFY_RESULT result);
  bool Robust() const { return session_.conduct_.robust != 0; }
  void Pause(std::uint32_t ms);
  bool JudgeEcho();

  // Wake-up and StartIDPS (identification_sequence.cpp)
  Outcome WakeUp();
  bool BeginAttempt(int attempt);
  bool StartIdps(unsigned char* status);
  bool AskToStart(unsigned char* status);
  Outcome EnterTokenMode(unsigned char start_status);
  void AdjustEventNotifications();
  void AwaitRemoteUiRequest();

  // By tokens (token_identification.cpp)
  Outcome IdentifyByTokens();
  bool MayTryTokensAgain() const;
  Outcome SurveyOptions();
  LingoOptions RequestOptions(std::uint8_t lingo);
  Outcome SendTokens();
  static TokenList Tokens(std::string_view model);
  const Token* Pack(const Token* next, const Token* end, ipodcomm::TokenPacket* packet);
  unsigned long Write(const Token& token, ipodcomm::TokenPacket* packet);
  Outcome EndTokens();
  Outcome JudgeTokens(unsigned char end_status);

  // By lingoes (lingo_identification.cpp)
  int IdentifyByLingoes();
  bool AnnounceLingoes(std::uint32_t mask, unsigned char* status);
  void AwaitModelNumberRequest();
  VersionVerdict SurveyVersions();
  bool SurveyVersion(const wchar_t* name, std::uint8_t lingo, bool needed,
                     tagIPOD_VERSION* version);
  VersionVerdict JudgeVersions(bool any_told, bool unanswered) const;
  int ConfigureIpod();

  CIpodComm& session_;
  tagIPOD_IDENTIFY_RESULT* result_;
  ipodcomm::KeepGoing own_;         // this identification's, beside the session's
  ipodcomm::KeepGoing keep_going_;  // both
  unsigned char options_[4];        // of the announcement, as is the device ID
  unsigned char device_id_[4] = {};
  Lingoes lingoes_ = {};
  ipodcomm::HostVersion version_;
  unsigned long started_ms_ = 0;
};

namespace ipodcomm {

/// The sequence's source name in the trace log.
constexpr wchar_t kIdentifyFunction[] = L"CIpodComm::Command_IdentifyDeviceLingos";

}  // namespace ipodcomm
