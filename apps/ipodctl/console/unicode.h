// SPDX-License-Identifier: MIT
// What Unicode says of characters; one file tells it with a library, one does without.
#pragma once

#include <cstdint>
#include <string>

namespace ipodctl {

/// What two names have in common that differ in nothing but case and composition.
std::string CaseFolded(const std::string& utf8);

/// How many columns of a terminal a character takes: 2 where it is wide, 0 where it stands on the
/// one before.
std::size_t ColumnsOf(std::uint32_t character);

}  // namespace ipodctl
