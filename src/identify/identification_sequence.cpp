// SPDX-License-Identifier: MIT
// The identification sequence: the host's call, the wake-up, and the ends of both branches.
#include "identify/identification_sequence.h"

#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"

namespace ipodcomm {

namespace {

// Options word: intermittent high power, or low power only.
constexpr unsigned char kPowerSomeHigh = 0x04;
constexpr unsigned char kPowerLow = 0x00;

constexpr int kTokenAttempts = 3;
constexpr DWORD kAttemptPauseMs = 100;

}  // namespace

IdentificationSequence::IdentificationSequence(CIpodComm& session, int flag,
                                               bool (*keep_going)(void* context), void* context)
    : session_(session),
      keep_going_(keep_going),
      context_(context),
      announcement_{{}, {0, 0, 0, flag != 0 ? kPowerSomeHigh : kPowerLow}, {0, 0, 0, 0}},
      version_(ReadHostVersion()) {}

int IdentificationSequence::Run() {
  Outcome outcome = WakeUp();
  if (outcome == Outcome::kDone) outcome = IdentifyByTokens();
  switch (outcome) {
    case Outcome::kDone:
      session_.identity_.idps_done = 1;
      result_ = IPOD_IDENTIFY_RESULT_IDPS;
      AdjustEventNotifications();
      AwaitRemoteUiRequest();
      return 1;
    case Outcome::kFallBack:
      return IdentifyByLingoes();
    case Outcome::kAbandoned:
      break;
  }
  return 0;
}

/// Wakes the iPod and starts the token identification. kDone when the iPod takes it.
IdentificationSequence::Outcome IdentificationSequence::WakeUp() {
  for (int attempt = 1;; ++attempt) {
    if (!BeginAttempt(attempt) || !KeepGoing()) return Outcome::kAbandoned;
    if (session_.identity_.idps_enabled == 0) return Outcome::kFallBack;
    unsigned char ack[2] = {};
    tagIPOD_READ_PARAMS read = Answer(general::kAck, ack);
    read.retries = 1;  // the loop is the retry
    if (session_.Exchange(Command(kGeneralLingo, general::kStartIdps), &read))
      return TakeStartStatus(ack[0]);
    CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Did not receive ack of start IDPS message");
    session_.transaction_id_mode_ = 0;
  }
}

/// False when the wake-up byte cannot be written.
bool IdentificationSequence::BeginAttempt(int attempt) {
  CIpodComm::Identity& identity = session_.identity_;
  identity.sports_supported = 0;
  identity.database_track_info = 0;
  identity.idps_done = 0;
  session_.browsing_.sort_select_only = 0;
  if (attempt > kTokenAttempts) identity.idps_enabled = 0;
  Sleep(kAttemptPauseMs);
  started_ms_ = GetTickCount();
  return session_.SendWakeUpByte();
}

/// From here on frames carry transaction identifiers, unless the iPod refuses.
IdentificationSequence::Outcome IdentificationSequence::TakeStartStatus(unsigned char status) {
  const bool taken = status == 0;
  session_.transaction_id_mode_ = taken ? 1 : 0;
  if (taken) return Outcome::kDone;
  session_.identity_.idps_enabled = 0;
  return Outcome::kFallBack;
}

/// Asks for the event notifications that the session knows, of those that the iPod supports.
void IdentificationSequence::AdjustEventNotifications() {
  unsigned char supported[8] = {};
  if (session_.Command_GetEventNotification(supported) == 0) return;
  unsigned char mask[8] = {};
  mask[7] = supported[7] & 0x04;
  mask[6] = supported[6] & 0x02;
  session_.Command_SetEventNotification(mask);
}

/// After the tokens the iPod may send a General 03. Read without sending anything; whether it comes
/// does not matter.
void IdentificationSequence::AwaitRemoteUiRequest() {
  unsigned char reply[2] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRequestRemoteUiMode, reply);
  session_.ReadCommand(&read);
}

}  // namespace ipodcomm

int CIpodComm::Command_IdentifyDeviceLingos(int flag, tagIPOD_IDENTIFY_RESULT* result,
                                            bool (*keep_going)(void* context), void* context) {
  if (result != nullptr) *result = IPOD_IDENTIFY_RESULT_NONE;  // what the callback finds
  ipodcomm::IdentificationSequence sequence(*this, flag, keep_going, context);
  const int identified = sequence.Run();
  if (result != nullptr) *result = sequence.result();
  return identified;
}

void CIpodComm::SetIDPSEnable(int enable) { identity_.idps_enabled = enable; }

int CIpodComm::GetIDPSEnable() { return identity_.idps_enabled; }
