// SPDX-License-Identifier: MIT
// Records of the iPod's database on the wire: how they are asked for, and what carries one.
#pragma once

#include <cstddef>

#include "ipodcomm/IpodTypes.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "protocol/text.h"
#include "session/exchange.h"

namespace ipodcomm {

/// `cc ssssssss nnnnnnnn`: category, first record, number of records.
struct RecordRequest {
  unsigned char bytes[9];

  RecordRequest(unsigned char category, unsigned long start, unsigned long count)
      : bytes{category} {
    WriteNumber32(bytes + 1, static_cast<std::uint32_t>(start));
    WriteNumber32(bytes + 5, static_cast<std::uint32_t>(count));
  }

  tagIPOD_WRITE_PARAMS Write() const {
    return Command(kExtendedLingo, extended::kRetrieveCategorizedDatabaseRecords, bytes);
  }
};

/// The reply that carries a record: its index (4 bytes), then its name. The name is converted from
/// 1024 bytes behind the index, so spare zeroed bytes follow the reply's own 1024.
struct RecordReply {
  static constexpr std::size_t kBytes = 1024;
  static constexpr std::size_t kNamePosition = 4;

  unsigned char bytes[kNamePosition + kBytes] = {};

  tagIPOD_READ_PARAMS Awaited() {
    return Answer(extended::kReturnCategorizedDatabaseRecord, bytes, kBytes);
  }
  unsigned long Index() const { return ReadNumber32(bytes); }
  void CopyName(wchar_t* name, unsigned long chars) const {
    TextFromUtf8(bytes + kNamePosition, kBytes, name, chars);
  }
};

}  // namespace ipodcomm
