// SPDX-License-Identifier: MIT
// What is made from the table of commands besides the decoder.
#pragma once

#include <string>

namespace ipodwire {

/// docs/wire.md: every command with its fields.
std::string WirePage();

/// The table of commands for the Wireshark dissector, in Lua.
std::string DissectorTable();

/// The text of the dissector with its table replaced by `table`. Empty when `dissector` has no
/// place for one.
std::string WithTable(const std::string& dissector, const std::string& table);

}  // namespace ipodwire
