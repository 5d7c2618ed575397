// SPDX-License-Identifier: MIT
// CIpodComm: browsing the iPod's database.
#include <cstdio>

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "media/records.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kExtendedLingo;
namespace extended = ipodcomm::extended;

namespace {

constexpr unsigned char kCurrentCategory = 255;

}  // namespace

int CIpodComm::Command_ResetDBSelection() {
  unsigned char status = 0;
  return ExchangeForExtendedAck(Command(kExtendedLingo, extended::kResetDbSelection), &status) &&
         status == 0;
}

int CIpodComm::Command_ResetDBSelectionHeirarchy(unsigned char hierarchy) {
  const unsigned char data[] = {hierarchy};
  unsigned char status = 0;
  return ExchangeForExtendedAck(Command(kExtendedLingo, extended::kResetDbSelectionHierarchy, data),
                                &status) &&
         status == 0;
}

int CIpodComm::Command_GetNumberCategorizedDBRecords(unsigned char category, unsigned long* count) {
  const unsigned char data[] = {category};
  unsigned char reply[4] = {};
  if (!Exchange(Command(kExtendedLingo, extended::kGetNumberCategorizedDbRecords, data),
                Answer(extended::kReturnNumberCategorizedDbRecords, reply)))
    return 0;
  *count = ipodcomm::ReadNumber32(reply);
  return 1;
}

unsigned char CIpodComm::CategoryOnWire(unsigned char category) const {
  return category == kCurrentCategory ? browsing_.current_category : category;
}

int CIpodComm::Command_RetrieveCategorizedDatabaseRecord(wchar_t* name, unsigned long chars,
                                                         unsigned long index,
                                                         unsigned char category) {
  const ipodcomm::RecordRequest request(CategoryOnWire(category), index, 1);
  ipodcomm::RecordReply reply;
  if (!Exchange(request.Write(), reply.Awaited())) return 0;
  reply.CopyName(name, chars);
  return 1;
}

int CIpodComm::Command_SelectDBRecord(unsigned char category, unsigned long index) {
  unsigned char data[5] = {category};
  ipodcomm::WriteNumber32(data + 1, static_cast<std::uint32_t>(index));
  return ExchangeForLoggedAck(Command(kExtendedLingo, extended::kSelectDbRecord, data),
                              L"CIpodComm::Command_SelectDBRecord",
                              L"Failed to select! Ack = 0x%02X");
}

int CIpodComm::Command_SelectSortDBRecord(unsigned char category, unsigned long index,
                                          unsigned char sort) {
  unsigned char data[6] = {category};
  ipodcomm::WriteNumber32(data + 1, static_cast<std::uint32_t>(index));
  data[5] = sort;
  return ExchangeForLoggedAck(Command(kExtendedLingo, extended::kSelectSortDbRecord, data),
                              L"CIpodComm::Command_SelectSortDBRecord",
                              L"Failed to select! Ack = 0x%02X");
}

int CIpodComm::SelectTop(unsigned char category, unsigned long* count, unsigned char hierarchy) {
  if (count != nullptr) *count = 0;
  if (hierarchy > ipod::IPOD_RESETDBSELECTIONHIERARCHY_VIDEO) return 0;
  const int reset = hierarchy == ipod::IPOD_RESETDBSELECTIONHIERARCHY_NONE
                        ? Command_ResetDBSelection()
                        : Command_ResetDBSelectionHeirarchy(hierarchy);
  if (reset == 0) return 0;
  if (count != nullptr && Command_GetNumberCategorizedDBRecords(category, count) == 0) return 0;
  EnterCategory(category);
  return 1;
}

int CIpodComm::Select(unsigned char category, unsigned long* count, unsigned long index) {
  *count = 0;
  const bool from_tracks = browsing_.selection_category == ipod::IPOD_CATEGORY_TRACK;
  if (category == ipod::IPOD_CATEGORY_TRACK && from_tracks &&
      Command_PlayControl(ipod::IPOD_PLAYCONTROL_STOP) == 0) {
    return 0;
  }
  const int selected = SelectRecord(browsing_.selection_category, index);
  // Selecting a track starts it and does not change the level.
  if (from_tracks || selected == 0) return selected;
  // The iPod has moved, so the categories move with it even when the count then fails.
  EnterCategory(category);
  return Command_GetNumberCategorizedDBRecords(category, count);
}

int CIpodComm::Select(unsigned char category, unsigned long index) {
  std::printf("Select iPod track category %d, index %d\n", static_cast<int>(category),
              static_cast<int>(index));
  return SelectRecord(category, index);
}

// The plain selection first, unless only the sorted one is to be used; then the sorted one, by
// name. It changes the order of what is listed next, so that under the robust conduct only an iPod
// that refuses the plain one gets it.
int CIpodComm::SelectRecord(unsigned char category, unsigned long index) {
  if (browsing_.sort_select_only == 0) {
    if (Command_SelectDBRecord(category, index) != 0) return 1;
    const bool refused = last_exchange_.result == IPOD_EXCHANGE_REFUSED;
    if (conduct_.robust != 0 && !refused) return 0;
  }
  return Command_SelectSortDBRecord(category, index, ipod::IPOD_SELECTSORT_NAME);
}

void CIpodComm::EnterCategory(unsigned char category) {
  browsing_.current_category = category;
  browsing_.selection_category = category;
}
