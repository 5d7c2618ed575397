// SPDX-License-Identifier: MIT
// Opens, identifies, and explains what failed.
#include "ipod/legacy_session.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/verbose_log.h"
#include "ipod/conduct.h"
#include "ipod/refusal.h"

namespace ipodctl {

namespace {

constexpr int kLowPower = 0;

}  // namespace

LegacySession::LegacySession(const Options& options, const DockLine& dock) : dock_(dock) {
  const tagIPOD_LEGACY_CONDUCT conduct = LegacyConductOf(options);
  ipod_.SetConduct(&conduct);
  ipod_.SetKeepGoing(CtrlC::MayGoOn, &ctrl_c_);
  Note("opening " + dock.device());
  if (ipod_.openport() == 0) dock.FailToOpen();
}

LegacySession::~LegacySession() { ipod_.closeport(); }

void LegacySession::Identify() {
  StatusLine status;
  status.Show("Identifying the iPod ...");
  Note("identifying through the legacy interface");
  const bool announced = ipod_.command_identifydevicelingos(kLowPower) != 0;
  StopIfInterrupted();
  // The acknowledgements of the identification itself are not read. What answers after them is an
  // iPod, and nearly every iPod has a model.
  if (announced) model_ = AskShort(ModelQuestion());
  if (model_.answered()) {
    model_number_ = ShownModelNumber(model_.data);
  } else if (!announced || (!model_.refused() && !ipodctl::Answers(ipod_))) {
    FailToFindIpod(ipod_, dock_, "no answer to the requests for its name and its model");
  }
}

// Many iPods acknowledge the request twice, first as pending, of which the interface reads the
// first only. The rest has come when another question is answered.
void LegacySession::EnterRemoteUi() {
  Note("entering remote user-interface mode");
  ipod_.command_enterremoteuimode();
  Require(Ask(StatusQuestion()), "be controlled from outside");
}

void LegacySession::Require(const LegacyAnswer& answer, const std::string& what) {
  if (answer.answered()) return;
  StopIfInterrupted();
  if (answer.refused()) throw CommandFailure(kFailed, Refusal(what, answer.status));
  RequireAnswers();
  throw CommandFailure(kFailed, "the iPod did not answer when asked to " + what);
}

void LegacySession::Require(bool succeeded, const std::string& what) {
  if (!succeeded) Require(LegacyAnswer(), what);
}

void LegacySession::RequireAnswers() {
  StopIfInterrupted();
  if (!Answers()) dock_.FailToReachIpod();
}

// Asks first what it has told before.
bool LegacySession::Answers() {
  const bool answers = model_.answered()
                           ? AskShort(ModelQuestion()).result != LegacyAnswer::Result::kUnanswered
                           : ipodctl::Answers(ipod_);
  return answers || SendsFrames(ipod_);
}

WorkoutSupport LegacySession::AcceptsWorkouts() {
  Require(model_, "tell its model");
  const std::string family = model_number_.substr(0, 4);
  if (family != "0014" && family != "0017") return {};
  constexpr std::uint8_t kSportsAck = 0x80;
  constexpr unsigned kNeeded =
      ipod::IPOD_SPORTS_GETIPODCAPS_MASK_GYM | ipod::IPOD_SPORTS_GETIPODCAPS_MASK_USERDATA;
  const LegacyAnswer sports =
      AskShort({[](ipod& docked) { return docked.command_sportsgetipodcaps(); },
                ipod::IPOD_COMMAND_SPORTS_GETIPODCAPS,
                ipod::IPOD_COMMAND_SPORTS_RETURNIPODCAPS,
                3,
                false,
                {},
                kSportsAck});
  if (sports.refused()) return {false, sports.status};
  Require(sports, "tell its Sports capabilities");
  if ((sports.data[1] & kNeeded) != kNeeded) return {};
  constexpr std::size_t kStorageBytes = 22;
  const LegacyAnswer storage =
      AskShort({[](ipod& docked) { return docked.command_storagegetipodcaps(); },
                ipod::IPOD_COMMAND_STORAGE_GETIPODCAPS,
                ipod::IPOD_COMMAND_STORAGE_RETURNIPODCAPS,
                kStorageBytes,
                false,
                {},
                ipod::IPOD_COMMAND_STORAGE_ACK});
  if (storage.refused()) return {false, storage.status};
  Require(storage, "tell its Storage capabilities");
  return {true, {}};
}

// An iPod that does not know the question refuses it, and so is there, however damaged the refusal
// arrives. Waiting for the answer drops the packets that came before.
bool Answers(ipod& docked) {
  return AskLegacyShort(docked, NameQuestion()).result != LegacyAnswer::Result::kUnanswered;
}

// One answer is awaited, whichever it is: a question whose answers came damaged twice and thrice is
// no proof that nobody is there.
bool SendsFrames(ipod& docked) {
  return docked.command_requestipodname() != 0 &&
         docked.ExtractDataFromPacketExtendedRaw(0, nullptr, 0) != 0;
}

void FailToFindIpod(ipod& docked, const DockLine& dock, const std::string& evidence) {
  if (Echoes(docked)) dock.FailForEcho();
  if (SendsFrames(docked)) {
    // Whether a frame was a large one is not told.
    throw CommandFailure(kFailed, "what sends frames on " + dock.device() +
                                      " cannot be used through the legacy interface; if they are "
                                      "large, which that does not know, leave out --legacy");
  }
  dock.FailToFindIpod(evidence);
}

bool Echoes(ipod& docked) {
  constexpr unsigned char kCapacity = 2;
  wchar_t text[kCapacity] = {};
  return docked.command_requestipodname() != 0 &&
         docked.extractdatafrompacket(ipod::IPOD_COMMAND_REQUESTIPODNAME, text, kCapacity, 0, 0) !=
             0;
}

}  // namespace ipodctl
