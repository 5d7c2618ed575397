// SPDX-License-Identifier: MIT
// The identification sequence: the host's call, the wake-up, and the ends of both branches.
#include "identify/identification_sequence.h"

#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "session/exchange.h"
#include "session/own_answers.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kGeneralLingo;
using ipodcomm::kIdentifyFunction;
namespace general = ipodcomm::general;

namespace {

// Options word: intermittent high power, or low power only.
constexpr unsigned char kPowerSomeHigh = 0x04;
constexpr unsigned char kPowerLow = 0x00;

constexpr int kTokenAttempts = 3;
constexpr std::uint32_t kAttemptPauseMs = 100;

}  // namespace

CIpodComm::IdentificationSequence::IdentificationSequence(CIpodComm& session, int flag,
                                                          tagIPOD_IDENTIFY_RESULT* result,
                                                          bool (*keep_going)(void* context),
                                                          void* context)
    : session_(session),
      result_(result),
      own_(keep_going, context),
      options_{0, 0, 0, flag != 0 ? kPowerSomeHigh : kPowerLow},
      version_(ipodcomm::ReadHostVersion()) {
  if (own_.asks() || session_.keep_going_.asks()) keep_going_ = {AskBoth, this};
}

int CIpodComm::IdentificationSequence::Run() {
  const unsigned long began_ms = Robust() ? GetTickCount() : 0;
  session_.identify_report_ = {};
  session_.identifying_ = 1;
  const bool always = Robust() || session_.keep_going_.asks();
  if (always && keep_going_.asks()) session_.keep_identifying_ = &keep_going_;
  const int identified = RunBranches();
  if (Stopped()) SetResult(IPOD_IDENTIFY_RESULT_NONE);
  session_.keep_identifying_ = nullptr;
  session_.identifying_ = 0;
  if (Robust()) {
    session_.identify_report_.took_ms = static_cast<std::uint32_t>(GetTickCount() - began_ms);
  }
  return Stopped() ? 0 : identified;
}

int CIpodComm::IdentificationSequence::RunBranches() {
  Outcome outcome = RunTokens();
  if (outcome == Outcome::kFallBack && MayTryTokensAgain()) outcome = RunTokens();
  switch (outcome) {
    case Outcome::kDone:
      session_.identity_.idps_done = 1;
      SetResult(IPOD_IDENTIFY_RESULT_IDPS);
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

auto CIpodComm::IdentificationSequence::RunTokens() -> Outcome {
  const Outcome outcome = WakeUp();
  return outcome == Outcome::kDone ? IdentifyByTokens() : outcome;
}

// Once one has said no, neither is asked again.
bool CIpodComm::IdentificationSequence::AskBoth(void* sequence) {
  auto& asking = *static_cast<IdentificationSequence*>(sequence);
  return !asking.Stopped() && asking.own_.Ask() && asking.session_.keep_going_.Ask();
}

// A host that stops finds "not identified", whatever the result was before.
bool CIpodComm::IdentificationSequence::KeepGoing() {
  if (keep_going_.Ask()) return true;
  SetResult(IPOD_IDENTIFY_RESULT_NONE);
  return false;
}

void CIpodComm::IdentificationSequence::SetResult(tagIPOD_IDENTIFY_RESULT result) {
  session_.identify_report_.result = result;
  if (result_ != nullptr) *result_ = result;
}

void CIpodComm::IdentificationSequence::Pause(std::uint32_t ms) {
  ipodcomm::PauseInSlices(session_.HostToAsk(), ms);
}

// Under the robust conduct, whether the last command brought its own bytes and nothing else. To go
// on then would be to talk to oneself.
bool CIpodComm::IdentificationSequence::JudgeEcho() {
  if (!Robust() || session_.last_exchange_.result != IPOD_EXCHANGE_ECHOED) return false;
  NKDbgPrintfW(L"Own bytes came back, and no answer!\r\n");
  SetResult(IPOD_IDENTIFY_RESULT_ECHO);
  return true;
}

// Wakes the iPod and starts the token identification. kDone when the iPod accepts it.
auto CIpodComm::IdentificationSequence::WakeUp() -> Outcome {
  for (int attempt = 1;; ++attempt) {
    if (!BeginAttempt(attempt) || !KeepGoing()) return Outcome::kAbandoned;
    if (session_.identity_.idps_enabled == 0) return Outcome::kFallBack;
    unsigned char status = 0;
    if (StartIdps(&status)) return EnterTokenMode(status);
    session_.transaction_id_mode_ = 0;
    if (Stopped() || JudgeEcho()) return Outcome::kAbandoned;
    CKORVATrace::LogSoftwareError(kIdentifyFunction, L"Did not receive ack of start IDPS message");
  }
}

// Some iPods stay silent until StartIDPS itself carries an identifier. Under the robust conduct a
// silent one is asked once more so, and an iPod that answers with one is from then on. (An ACK
// without one may be a late answer to the first.)
bool CIpodComm::IdentificationSequence::StartIdps(unsigned char* status) {
  Identity& identity = session_.identity_;
  if (identity.start_carries_id == 0) {
    if (AskToStart(status)) return true;
    const bool silent = session_.last_exchange_.result != IPOD_EXCHANGE_DAMAGED;
    if (!Robust() || !silent) return false;
  }
  session_.SetOwnTransactionId(0);
  session_.transaction_id_mode_ = 1;
  if (!AskToStart(status)) return false;
  identity.start_carries_id = session_.last_exchange_.answer_carried_id;
  return true;
}

bool CIpodComm::IdentificationSequence::AskToStart(unsigned char* status) {
  unsigned char ack[2] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kAck, ack);
  read.retries = 1;  // the loop is the retry
  if (!session_.Exchange(Command(kGeneralLingo, general::kStartIdps), &read)) return false;
  *status = ack[0];
  return true;
}

// False when the host has stopped, or the wake-up byte cannot be written.
bool CIpodComm::IdentificationSequence::BeginAttempt(int attempt) {
  SetResult(IPOD_IDENTIFY_RESULT_NONE);
  session_.ForgetIdentification();
  if (attempt > kTokenAttempts) session_.identity_.idps_enabled = 0;
  Pause(kAttemptPauseMs);
  if (Stopped()) return false;
  started_ms_ = GetTickCount();
  return session_.SendWakeUpByte();
}

// From here on frames carry transaction identifiers, unless the iPod refuses.
auto CIpodComm::IdentificationSequence::EnterTokenMode(unsigned char start_status) -> Outcome {
  const bool accepted = start_status == 0;
  session_.transaction_id_mode_ = accepted ? 1 : 0;
  if (accepted) return Outcome::kDone;
  session_.identity_.idps_enabled = 0;
  return Outcome::kFallBack;
}

// Asks for the event notifications that the session knows, of those that the iPod supports.
void CIpodComm::IdentificationSequence::AdjustEventNotifications() {
  unsigned char supported[8] = {};
  if (session_.Command_GetEventNotification(supported) == 0) return;
  unsigned char mask[8] = {};
  mask[7] = supported[7] & 0x04;
  mask[6] = supported[6] & 0x02;
  session_.Command_SetEventNotification(mask);
}

// After the tokens the iPod may send a General 03. Read without sending anything; whether it comes
// does not matter.
void CIpodComm::IdentificationSequence::AwaitRemoteUiRequest() {
  unsigned char reply[2] = {};
  tagIPOD_READ_PARAMS read = Answer(general::kRequestRemoteUiMode, reply);
  if (!Robust()) {
    session_.ReadCommand(&read);
    return;
  }
  const tagIPOD_WRITE_PARAMS unsent = Command(kGeneralLingo, general::kRequestRemoteUiMode);
  ipodcomm::OwnAnswers request(unsent, read.expected_command);
  session_.AwaitOwnAnswer(&request, &read);
}

int CIpodComm::Command_IdentifyDeviceLingos(int flag, tagIPOD_IDENTIFY_RESULT* result,
                                            bool (*keep_going)(void* context), void* context) {
  return IdentificationSequence(*this, flag, result, keep_going, context).Run();
}

int CIpodComm::GetIdentifyReport(tagIPOD_IDENTIFY_REPORT* report) {
  if (report == nullptr) return 0;
  *report = identify_report_;
  return 1;
}

void CIpodComm::ForgetIdentification() {
  identity_.sports_supported = 0;
  identity_.database_track_info = 0;
  identity_.idps_done = 0;
  browsing_.sort_select_only = 0;
}

void CIpodComm::SetIDPSEnable(int enable) { identity_.idps_enabled = enable; }

int CIpodComm::GetIDPSEnable() { return identity_.idps_enabled; }
