// SPDX-License-Identifier: MIT
// The General lingo, 0x00: who is there, and how it wants to be treated.
#include <utility>

#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

// Two of the questions name what they are about.
Field AccessoryInformationQuestion() {
  std::vector<Case> cases;
  for (const Value& type : AccessoryInformationTypes()) cases.push_back({type.number, {}});
  cases[0x02].fields = {Optional(Bytes("iPod"))};
  cases[0x03].fields = {Optional(Named(1, "lingo", LingoNumbers()))};
  return Choice("type", std::move(cases));
}

const std::vector<Value> kUiModes = {{0, "standard"}, {1, "extended"}};
const std::vector<Value> kPower = {{0, "low power"}, {4, "sometimes high power"}};

const std::vector<Command> kGeneralCommands = {
    {0x00, "RequestIdentify", kIpod, kNoReply, {}},
    {0x01,
     "Identify",
     kAccessory,
     kNoReply,
     {Named(1, "lingo", LingoNumbers())},
     kNoIdentifier,
     "The oldest way to identify. Accessories that announce several lingoes send it first, to be "
     "told their iPod's model."},
    {0x02, "ACK", Sender::kEither, kNoReply, AckFields(1), true,
     "With two bytes of data it never carries a transaction identifier."},
    {0x03,
     "RequestRemoteUIMode",
     kAccessory,
     kAcknowledged,
     {},
     kNoIdentifier,
     "Some iPods answer by ReturnRemoteUIMode."},
    {0x04, "ReturnRemoteUIMode", kIpod, kNoReply, {Named(1, "mode", kUiModes)}},
    {0x05, "EnterRemoteUIMode", kAccessory, kAcknowledged, {}},
    {0x06, "ExitRemoteUIMode", kAccessory, kAcknowledged, {}},
    {0x07, "RequestiPodName", kAccessory, RepliedBy(0x08), {}},
    {0x08, "ReturniPodName", kIpod, kNoReply, {Text("name")}},
    {0x09, "RequestiPodSoftwareVersion", kAccessory, RepliedBy(0x0A), {}},
    {0x0A, "ReturniPodSoftwareVersion", kIpod, kNoReply, {LongVersion("version")}},
    {0x0B, "RequestiPodSerialNum", kAccessory, RepliedBy(0x0C), {}},
    {0x0C, "ReturniPodSerialNum", kIpod, kNoReply, {Text("serial number")}},
    {0x0D, "RequestiPodModelNum", kAccessory, RepliedBy(0x0E), {}},
    {0x0E, "ReturniPodModelNum", kIpod, kNoReply, {Hex(4, "model ID"), Text("model number")}},
    {0x0F,
     "RequestLingoProtocolVersion",
     kAccessory,
     RepliedBy(0x10),
     {Named(1, "lingo", LingoNumbers())}},
    {0x10,
     "ReturnLingoProtocolVersion",
     kIpod,
     kNoReply,
     {Named(1, "lingo", LingoNumbers()), Version("version")}},
    {0x11, "RequestMaxPayloadSize", kAccessory, RepliedBy(0x12), {}},
    {0x12, "ReturnMaxPayloadSize", kIpod, kNoReply, {U16("maximum payload", "bytes")}},
    {0x13,
     "IdentifyDeviceLingoes",
     kAccessory,
     kAcknowledged,
     {Bits(4, "lingoes", LingoBits()), Named(4, "options", kPower), Hex(4, "device ID")},
     kNoIdentifier,
     "Ends the use of transaction identifiers."},
    {0x23, "NotifyiPodStateChange", kIpod, kNoReply, {Hex(1, "state")}},
    {0x27,
     "GetAccessoryInfo",
     kIpod,
     RepliedBy(0x28),
     {Named(1, "type", AccessoryInformationTypes()), AccessoryInformationQuestion()}},
    {0x28,
     "RetAccessoryInfo",
     kAccessory,
     kNoReply,
     {Named(1, "type", AccessoryInformationTypes()), AccessoryInformation()},
     kNoIdentifier},
    {0x29,
     "GetiPodPreferences",
     kAccessory,
     RepliedBy(0x2A),
     {Named(1, "class", PreferenceClasses())}},
    {0x2A,
     "RetiPodPreferences",
     kIpod,
     kNoReply,
     {Named(1, "class", PreferenceClasses()), PreferenceSetting()}},
    {0x2B,
     "SetiPodPreferences",
     kAccessory,
     kAcknowledged,
     {Named(1, "class", PreferenceClasses()), PreferenceSetting(),
      Named(1, "restore on exit", YesOrNo())}},
    {0x37, "SetUIMode", kAccessory, kAcknowledged, {Named(1, "mode", kUiModes)}},
    {0x38,
     "StartIDPS",
     kAccessory,
     kAcknowledged,
     {},
     true,
     "Begins the identification by tokens, and with it the use of transaction identifiers. "
     "Accessories send it without one; some iPods want it with one."},
    {0x39, "SetFIDTokenValues", kAccessory, RepliedBy(0x3A), TokenFields()},
    {0x3A, "RetFIDTokenValueACKs", kIpod, kNoReply, TokenAckFields()},
    {0x3B, "EndIDPS", kAccessory, RepliedBy(0x3C), {Named(1, "how", {{0, "all tokens sent"}})}},
    {0x3C,
     "IDPSStatus",
     kIpod,
     kNoReply,
     {Named(1, "status",
            {{0, "identified"},
             {1, "tokens missing"},
             {3, "abandoned"},
             {5, "not to be tried again"}})}},
    {0x49, "SetEventNotification", kAccessory, kAcknowledged, {Hex(8, "events")}},
    {0x4A, "iPodNotification", kIpod, kNoReply, {Hex(1, "event"), Optional(Bytes("more"))}},
    {0x4B,
     "GetiPodOptionsForLingo",
     kAccessory,
     RepliedBy(0x4C),
     {Named(1, "lingo", LingoNumbers())}},
    {0x4C,
     "RetiPodOptionsForLingo",
     kIpod,
     kNoReply,
     {Named(1, "lingo", LingoNumbers()),
      Choice("lingo",
             {{0x04, {Bits(8, "options", {{0x02, "track information from the database"}})}},
              {0x09, {Bits(8, "options", {{0x02, "workouts"}})}}},
             {Hex(8, "options")})}},
    {0x4F, "GetSupportedEventNotification", kAccessory, RepliedBy(0x51), {}},
    {0x50,
     "CancelCommand",
     kAccessory,
     kAcknowledged,
     {},
     true,
     "Its transaction identifier is that of the command to give up."},
    {0x51, "RetSupportedEventNotification", kIpod, kNoReply, {Hex(8, "events")}},
};

}  // namespace

const std::vector<Command>& GeneralCommands() { return kGeneralCommands; }

}  // namespace ipodwire
