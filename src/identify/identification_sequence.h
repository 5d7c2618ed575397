// SPDX-License-Identifier: MIT
// One run of the identification sequence.
#pragma once

#include <cstdint>

#include "identify/file_version.h"
#include "identify/token_packet.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

/// A preference that identification announces or sets.
struct PreferenceSetting {
  unsigned char preference_class;
  unsigned char setting;
};

/// Makes the iPod accept the accessory.
///
///   wake up, StartIDPS (3 attempts) --- taken --> tokens, EndIDPS --- status 0 --> identified
///        |  IDPS disabled, not taken                   |  failed
///        v                                             v
///   IdentifyDeviceLingoes (General) -> lingo version survey -> IdentifyDeviceLingoes -> identified
///
/// Runs on the host's thread, which may stop it between the steps.
class IdentificationSequence {
 public:
  IdentificationSequence(CIpodComm& session, int flag, bool (*keep_going)(void* context),
                         void* context);

  /// @return non-zero when the accessory is identified
  int Run();
  tagIPOD_IDENTIFY_RESULT result() const { return result_; }

 private:
  friend struct IdentificationSequencePeer;  // the tests' look inside

  /// How a phase ended.
  enum class Outcome {
    kDone,       // as hoped: the sequence goes on with the next phase of its branch
    kFallBack,   // the iPod does not take tokens: go on with IdentifyDeviceLingoes
    kAbandoned,  // stopped by the host, or failed for good
  };
  /// What the iPod tells about a lingo: its number and eight option bytes.
  struct LingoOptions {
    bool exchanged;
    bool refused;  // an ACK came in their place
    unsigned char reply[9];

    bool OptionSet() const { return (reply[8] & 0x02) != 0; }
  };

  bool KeepGoing() const { return keep_going_ == nullptr || keep_going_(context_); }

  // Wake-up and StartIDPS (identification_sequence.cpp)
  Outcome WakeUp();
  bool BeginAttempt(int attempt);
  Outcome TakeStartStatus(unsigned char status);
  void AdjustEventNotifications();
  void AwaitRemoteUiRequest();

  // By tokens (token_identification.cpp)
  Outcome IdentifyByTokens();
  Outcome SurveyOptions();
  LingoOptions RequestOptions(std::uint8_t lingo);
  Outcome SendTokens();
  bool SendIdentifyToken(TokenPacket* packet);
  bool AddTokens(TokenPacket* packet);
  static bool Added(TokenPacket::Result result);
  Outcome EndTokens();
  Outcome TakeEndStatus(unsigned char status);

  // By lingoes (lingo_identification.cpp)
  int IdentifyByLingoes();
  bool AnnounceLingoes(std::uint32_t mask, unsigned char* status);
  void AwaitModelNumberRequest();
  void SurveyVersions();
  void SurveyVersion(const wchar_t* name, std::uint8_t lingo, tagIPOD_VERSION* version);
  bool VersionsSuffice() const;
  void SetPreferences();

  CIpodComm& session_;
  bool (*keep_going_)(void* context);
  void* context_;
  tagIdentifyToken announcement_;  // lingoes, options word and device ID
  HostVersion version_;
  unsigned long started_ms_ = 0;
  tagIPOD_IDENTIFY_RESULT result_ = IPOD_IDENTIFY_RESULT_NONE;
};

/// The sequence's source name in the trace log.
constexpr wchar_t kIdentifyFunction[] = L"CIpodComm::Command_IdentifyDeviceLingos";

}  // namespace ipodcomm
