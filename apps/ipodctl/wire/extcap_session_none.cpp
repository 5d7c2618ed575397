// SPDX-License-Identifier: MIT
// Where a recording cannot pass through the program on its way.
#include "wire/extcap_session.h"

namespace ipodctl {

bool CanRecordForWireshark() { return false; }

void RecordForWireshark(const std::string& /*pipe*/) {}

}  // namespace ipodctl
