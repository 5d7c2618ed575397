// SPDX-License-Identifier: MIT
// The Sports lingo, 0x09: what an exercise machine and an iPod can do for each other.
#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

const std::vector<Value> kUserDataTypes = {{2, "flag"}, {3, "weight"}, {4, "value"}};

std::vector<Field> UserDataFields() {
  return {Named(1, "type", kUserDataTypes),
          Choice("type", {{2, {U8("flag")}}, {3, {U16("weight")}}, {4, {U8("value")}}})};
}

// Below 0x80 the iPod asks and the accessory answers, from 0x80 on the other way round.
const std::vector<Command> kSportsCommands = {
    {0x00, "ACK", kAccessory, kNoReply, AckFields(1)},
    {0x01, "GetDeviceVersion", kIpod, RepliedBy(0x02), {}},
    {0x02, "RetDeviceVersion", kAccessory, kNoReply, {Version("version")}},
    {0x03, "GetDeviceCaps", kIpod, RepliedBy(0x04), {}},
    {0x04, "RetDeviceCaps", kAccessory, kNoReply, {Bytes("capabilities", 3)}},
    {0x80, "iPodACK", kIpod, kNoReply, AckFields(1)},
    {0x83, "GetiPodCaps", kAccessory, RepliedBy(0x84), {}},
    {0x84,
     "RetiPodCaps",
     kIpod,
     kNoReply,
     {Bits(2, "capabilities", {{0x01, "workouts"}, {0x02, "user data"}}), Hex(1, "more")}},
    {0x85, "GetUserIndex", kAccessory, RepliedBy(0x86), {}},
    {0x86, "RetUserIndex", kIpod, kNoReply, {Bytes("user index")}},
    {0x88, "GetUserData", kAccessory, RepliedBy(0x89), {Named(1, "type", kUserDataTypes)}},
    {0x89, "RetUserData", kIpod, kNoReply, UserDataFields()},
    {0x8A, "SetUserData", kAccessory, kAcknowledged, UserDataFields()},
};

}  // namespace

const std::vector<Command>& SportsCommands() { return kSportsCommands; }

}  // namespace ipodwire
