// SPDX-License-Identifier: MIT
// The kinds of information that an accessory gives about itself, in its tokens and when asked.

#pragma once

#include <cstdint>

namespace ipodsim {

enum AccessoryInformation : std::uint8_t {
  kCapabilities = 0x00,  // which of the others it has, one bit each
  kAccessoryName = 0x01,
  kFirmwareVersion = 0x04,
  kHardwareVersion = 0x05,
  kManufacturer = 0x06,
  kModelNumber = 0x07,
  kSerialNumber = 0x08,
  kMaxPayload = 0x09,
  kStatusTypes = 0x0B,
  kCertification = 0x0C,
};

/// Whether it is a text; the others are numbers of fixed size.
inline bool IsTextInformation(std::uint8_t type) {
  return type == kAccessoryName || type == kManufacturer || type == kModelNumber ||
         type == kSerialNumber;
}

}  // namespace ipodsim
