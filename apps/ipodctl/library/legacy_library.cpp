// SPDX-License-Identifier: MIT
// Selects records and reads their names one by one.
#include "library/legacy_library.h"

#include "console/interrupt.h"

namespace ipodctl {

namespace {

constexpr std::uint8_t kAck = ipod::IPOD_COMMAND_EXTENDEDACK;
constexpr std::size_t kAckBytes = 3;

std::vector<std::uint8_t> Bytes(std::uint32_t number) {
  std::vector<std::uint8_t> bytes;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
  return bytes;
}

}  // namespace

bool LegacyLibrary::SelectTop(unsigned char category, unsigned char hierarchy,
                              unsigned long* count) {
  const bool whole = hierarchy == ipod::IPOD_RESETDBSELECTIONHIERARCHY_NONE;
  last_ = session_.Ask(
      {[=](ipod& docked) {
         return whole ? docked.command_resetdbselection()
                      : docked.command_resetdbselectionhierarchy(hierarchy);
       },
       whole ? ipod::IPOD_COMMAND_RESETDBSELECTION : ipod::IPOD_COMMAND_RESETDBSELECTIONHIERARCHY,
       kAck, kAckBytes});
  return last_.answered() && Count(category, count);
}

bool LegacyLibrary::Select(unsigned long index, unsigned char next, unsigned long* count) {
  return SelectRecord(index) && Count(next, count);
}

// Of the category that was counted last.
bool LegacyLibrary::SelectRecord(unsigned long index) {
  const bool sorted = session_.SortsByName();
  last_ = session_.Ask(
      {[=](ipod& docked) {
         return sorted ? docked.command_selectsortdbrecord(
                             index, static_cast<unsigned char>(ipod::IPOD_SELECTSORT_NAME))
                       : docked.command_selectdbrecord(index);
       },
       sorted ? ipod::IPOD_COMMAND_SELECTSORTDBRECORD : ipod::IPOD_COMMAND_SELECTDBRECORD, kAck,
       kAckBytes});
  return last_.answered();
}

bool LegacyLibrary::Count(unsigned char category, unsigned long* count) {
  session_.interface().setcategory(category);
  last_ = session_.Ask({[](ipod& docked) { return docked.command_getnumbercategorizeddbrecords(); },
                        ipod::IPOD_COMMAND_GETNUMBERCATORIZEDDBRECORDS,
                        ipod::IPOD_COMMAND_RETURNNUMBERCATEGORIZEDDBRECORDS, 4});
  if (last_.answered()) *count = last_.Number(0);
  return last_.answered();
}

// A name that is too long for the interface is lost like one that does not come.
std::optional<std::string> LegacyLibrary::ReadName(unsigned char category, unsigned long index) {
  constexpr std::size_t kIndexBytes = 4;
  session_.interface().setcategory(category);
  last_ = session_.Ask(
      {[=](ipod& docked) { return docked.command_retrievecategorizeddbrecords(index); },
       ipod::IPOD_COMMAND_RETRIEVECATEGORIZEDDATABASERECORDS,
       ipod::IPOD_COMMAND_RETURNCATEGORIZEDDATABASERECORDS, kIndexBytes + 1, true,
       Bytes(static_cast<std::uint32_t>(index))});
  if (last_.answered()) {
    return TextIn(last_, kIndexBytes);
  }
  if (last_.refused()) session_.Require(last_, "name record " + std::to_string(index));
  session_.RequireAnswers();
  return std::nullopt;
}

void LegacyLibrary::ReadNames(unsigned char category, unsigned long from, unsigned long count,
                              const TakeName& take) {
  for (unsigned long index = from; index < from + count; ++index) {
    StopIfInterrupted();
    if (!take(index, ReadName(category, index))) return;
  }
}

void LegacyLibrary::Require(bool succeeded, const std::string& what) {
  if (!succeeded) session_.Require(last_, what);
}

}  // namespace ipodctl
