// SPDX-License-Identifier: MIT
// The tokens with which an accessory describes itself.
//
//   packet   count token token ...
//   token    length 00 subtype fields...        the length counts what follows it

#pragma once

#include <string>
#include <vector>

#include "simulator/base/bytes.h"

namespace ipodsim {

struct Token {
  std::uint8_t subtype = 0;
  Bytes fields;  // what follows the subtype

  /// What tells two tokens of one subtype apart: the information type, the preference class, the
  /// protocol index. Empty for tokens of which there is one.
  Bytes Selector() const;
  std::string Name() const;
};

constexpr std::uint8_t kIdentifyToken = 0x00;
constexpr std::uint8_t kCapabilitiesToken = 0x01;
constexpr std::uint8_t kInformationToken = 0x02;
constexpr std::uint8_t kPreferenceToken = 0x03;
constexpr std::uint8_t kProtocolToken = 0x04;
constexpr std::uint8_t kBundleSeedToken = 0x05;
constexpr std::uint8_t kProtocolMetadataToken = 0x08;
constexpr std::uint8_t kSampleRatesToken = 0x0E;
constexpr std::uint8_t kVideoDelayToken = 0x0F;

struct TokenPacket {
  std::vector<Token> tokens;
  std::string bad_layout;   // empty when every token is as it should be
  std::string wrong_count;  // empty when the count byte agrees
};

TokenPacket ParseTokens(const Bytes& packet);

/// Empty when the token's fields have the size and form that its subtype asks for.
std::string LayoutProblem(const Token& token);

}  // namespace ipodsim
