// SPDX-License-Identifier: MIT
// One good frame of every command that the library sends or receives, in every form.
#pragma once

#include <vector>

#include "support/bytes.h"

namespace test {

/// In the short and the large form, without and with a transaction identifier.
const std::vector<Bytes>& GoldenFrames();

}  // namespace test
