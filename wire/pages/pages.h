// SPDX-License-Identifier: MIT
// What is made from the table of commands besides the decoder.
#pragma once

#include <string>

namespace ipodwire {

/// Takes the parts of a page in their order, and lays them out.
class PageWriter {
 public:
  virtual ~PageWriter() = default;
  virtual void Title(const std::string& text) = 0;
  virtual void Lingo(const std::string& text) = 0;
  virtual void Command(const std::string& text) = 0;
  /// Lines of running text; what stands between backquotes is typed as it is.
  virtual void Paragraph(const std::string& text) = 0;
  /// Lines with a layout of their own.
  virtual void Verbatim(const std::string& text) = 0;
  virtual void BeginFields() = 0;
  /// @param bytes how many; empty where they vary
  virtual void Field(const std::string& name, const std::string& bytes,
                     const std::string& meaning) = 0;
};

/// Every command with its fields.
void WriteWirePage(PageWriter* page);

/// docs/wire.md.
std::string WirePage();

/// The table of commands for the Wireshark dissector, in Lua.
std::string DissectorTable();

/// The text of the dissector with its table replaced by `table`. Empty when `dissector` has no
/// place for one.
std::string WithTable(const std::string& dissector, const std::string& table);

}  // namespace ipodwire
