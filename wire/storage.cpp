// SPDX-License-Identifier: MIT
// The Storage lingo, 0x0C: files that an accessory leaves on the iPod, such as workouts.
#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

std::vector<Field> StorageCapabilities() {
  return {U64("total space", "bytes"), U32("largest file", "bytes"), U16("largest write", "bytes"),
          Bytes("reserved", 6), Version("version")};
}

// From 0x80 on the iPod asks and the accessory answers.
const std::vector<Command> kStorageCommands = {
    {0x00, "ACK", kIpod, kNoReply, AckFields(1)},
    {0x01, "GetiPodCaps", kAccessory, RepliedBy(0x02), {}},
    {0x02, "RetiPodCaps", kIpod, kNoReply, StorageCapabilities()},
    {0x04, "RetiPodFileHandle", kIpod, kNoReply, {U8("file handle")}},
    {0x07,
     "WriteiPodFileData",
     kAccessory,
     kAcknowledged,
     {U32("offset", "bytes"), U8("file handle"), Optional(Characters("data"))}},
    {0x08, "CloseiPodFile", kAccessory, kAcknowledged, {U8("file handle")}},
    {0x10, "GetiPodFreeSpace", kAccessory, RepliedBy(0x11), {}},
    {0x11, "RetiPodFreeSpace", kIpod, kNoReply, {U64("free space", "bytes")}},
    {0x12,
     "OpeniPodFeatureFile",
     kAccessory,
     RepliedBy(0x04),
     {Named(1, "feature", {{1, "radio tagging"}, {2, "gym equipment"}}),
      Bits(4, "options",
           {{0x01, "append data"}, {0x02, "append iPod information"}, {0x08, "append signature"}}),
      Optional(Characters("ending"))}},
    {0x81, "GetAccessoryCaps", kIpod, RepliedBy(0x82), {}},
    {0x82, "RetAccessoryCaps", kAccessory, kNoReply, StorageCapabilities()},
};

}  // namespace

const std::vector<Command>& StorageCommands() { return kStorageCommands; }

}  // namespace ipodwire
