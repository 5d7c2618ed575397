// SPDX-License-Identifier: MIT
// What the iPod itself puts at the end of a workout file.

#pragma once

#include <cstdint>
#include <string>

#include "simulator/base/bytes.h"
#include "simulator/settings/settings.h"

namespace ipodsim {

/// Options of an open feature file, as bits.
constexpr std::uint32_t kAppendData = 0x01;       // the data given when the file was opened
constexpr std::uint32_t kAppendIpodInfo = 0x02;   // an XML element that says which iPod this is
constexpr std::uint32_t kAppendSignature = 0x08;  // an XML element that seals what is before it

/// Seals a file by a 64-bit FNV-1a hash over its bytes so far.
class Signature {
 public:
  void Add(const Bytes& data);
  /// 16 hexadecimal digits.
  std::string Text() const;

 private:
  std::uint64_t hash_ = 0xCBF29CE484222325;
};

/// The element <iPodInfo>, indented as part of a workout document.
std::string IpodInfoElement(const Settings& settings);
/// The element <signature>.
std::string SignatureElement(const Signature& signature);

}  // namespace ipodsim
