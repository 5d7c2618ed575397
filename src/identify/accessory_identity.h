// SPDX-License-Identifier: MIT
// What the accessory says of itself, in identification tokens and on request.
#pragma once

namespace ipodcomm {

constexpr char kAccessoryName[] = "Orvian Touch";
constexpr char kAccessoryManufacturer[] = "Orvian Fitness";
constexpr char kAccessorySerialNumber[] = "000001";

// Kinds of accessory information.
constexpr unsigned char kInfoCapabilities = 0;
constexpr unsigned char kInfoName = 1;
constexpr unsigned char kInfoFirmware = 4;
constexpr unsigned char kInfoHardware = 5;
constexpr unsigned char kInfoManufacturer = 6;
constexpr unsigned char kInfoModelNumber = 7;
constexpr unsigned char kInfoSerialNumber = 8;

}  // namespace ipodcomm
