// SPDX-License-Identifier: MIT
// Reads fields, as the table describes them, out of a frame's data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "wire/decode.h"
#include "wire/table.h"

namespace ipodwire {

class FieldDecoder {
 public:
  /// @param lingo and `sender` name the commands that the fields speak of
  FieldDecoder(std::uint8_t lingo, Sender sender) : lingo_(lingo), sender_(sender) {}

  std::vector<DecodedField> Decode(const std::vector<Field>& fields, const std::uint8_t* data,
                                   std::size_t size);
  /// What does not fit.
  const std::vector<std::string>& problems() const { return problems_; }

 private:
  struct Cursor {
    const std::uint8_t* at;
    std::size_t left;

    std::uint8_t Take();
    std::vector<std::uint8_t> Take(std::size_t count);
  };
  using Fields = std::vector<DecodedField>;

  bool ReadAll(const std::vector<Field>& fields, Cursor* cursor, Fields* read);
  bool Read(const Field& field, Cursor* cursor, Fields* read);
  bool ReadNumber(const Field& field, Cursor* cursor, Fields* read);
  void ReadVersion(const Field& field, Cursor* cursor, Fields* read);
  void ReadText(const Field& field, Cursor* cursor, Fields* read);
  bool ReadRepeated(const Field& field, Cursor* cursor, Fields* read);
  bool ReadCounted(const Field& field, Cursor* cursor, Fields* read);
  bool ReadRecords(const Field& field, Cursor* cursor, Fields* read);
  bool ReadChoice(const Field& field, std::uint64_t selector, Cursor* cursor, Fields* read);
  void ReadRest(const char* name, Cursor* cursor, Fields* read);
  bool CutShort(const Field& field, Cursor* cursor, Fields* read);
  std::string Show(const Field& field, std::size_t size, std::uint64_t number) const;

  std::uint8_t lingo_;
  Sender sender_;
  std::vector<std::string> problems_;
};

}  // namespace ipodwire
