// SPDX-License-Identifier: MIT
// ipod: browsing the iPod's database, one category at a time and one record at a time.
#include <cstdint>

#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"

using ipodcomm::kIgnored;
using ipodcomm::kReplyCharacters;
using ipodcomm::Store;

unsigned char ipod::getcategory() { return category_; }

void ipod::setcategory(unsigned char category) { category_ = category; }

unsigned char ipod::getlastcategory() { return last_category_; }

wchar_t* ipod::getlasttry() { return status_text_; }

int ipod::loadipodcategorydbrecordcount(unsigned long* count) {
  Store(count, 0);
  if (!command_getnumbercategorizeddbrecords()) return 0;
  wchar_t reply[5] = {};
  if (!ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNNUMBERCATEGORIZEDDBRECORDS, reply, 5, 0,
                                     kIgnored)) {
    return 0;
  }
  Store(count, ipodcomm::ReplyNumber32(reply));
  return 1;
}

// Waits for the ACK of a selection and enters `category` when it tells success.
int ipod::EnterWhenAcknowledged(unsigned char category, unsigned long* count) {
  wchar_t reply[25] = {255};
  if (!ExtractDataFromPacketExtended(IPOD_COMMAND_EXTENDEDACK, reply, 25, 0, kIgnored)) return 0;
  if (reply[0] != 0) return 0;
  category_ = category;
  last_category_ = category;
  return loadipodcategorydbrecordcount(count);
}

int ipod::ResetSelection(unsigned char hierarchy) {
  if (hierarchy == IPOD_RESETDBSELECTIONHIERARCHY_NONE) return command_resetdbselection();
  if (hierarchy > IPOD_RESETDBSELECTIONHIERARCHY_VIDEO) return 0;
  return command_resetdbselectionhierarchy(hierarchy);
}

int ipod::selecttop(unsigned char category, unsigned long* count, unsigned char hierarchy) {
  unsigned long records = 0;
  const int result = ResetSelection(hierarchy) && EnterWhenAcknowledged(category, &records);
  Store(count, records);
  NKDbgPrintfW(L"SelectTop Category %d, Count Returned %d, Result %d\n", category,
               static_cast<int>(records), result);
  return result;
}

int ipod::SelectRecord(unsigned char category, unsigned short index, unsigned long* count) {
  const bool from_tracks = last_category_ == IPOD_CATEGORY_TRACK;
  category_ = last_category_;
  if (from_tracks && category == IPOD_CATEGORY_TRACK &&
      !command_playcontrol(static_cast<unsigned char>(IPOD_PLAYCONTROL_STOP))) {
    return 0;
  }
  const int sent = name_sort_ != 0 ? command_selectsortdbrecord(
                                         index, static_cast<unsigned char>(IPOD_SELECTSORT_NAME))
                                   : command_selectdbrecord(index);
  // Selecting a track plays it: no ACK is awaited and the category stays.
  if (!sent || from_tracks) return sent;
  return EnterWhenAcknowledged(category, count);
}

int ipod::select(unsigned char category, unsigned short index, unsigned long* count) {
  const unsigned char last_category = last_category_;
  unsigned long records = 0;
  const int result = SelectRecord(category, index, &records);
  Store(count, records);
  NKDbgPrintfW(L"Select Last Category %d, Category %d, Index %d, Count %d, Result %d\n",
               last_category, category, index, static_cast<int>(records), result);
  return result;
}

int ipod::ReadRecordName(wchar_t* name, int capacity, unsigned long index) {
  constexpr int kNamePosition = 4;  // behind the record's index
  if (!command_retrievecategorizeddbrecords(index)) return 0;
  wchar_t reply[kReplyCharacters] = {};
  if (!ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNCATEGORIZEDDATABASERECORDS, reply,
                                     kReplyCharacters, 0, kIgnored)) {
    return 0;
  }
  StringCchCopyW(name, static_cast<std::size_t>(capacity), reply + kNamePosition);
  ipodcomm::EndBehindWholeCharacter(name, static_cast<std::size_t>(capacity));
  return *name != L'\0';
}

int ipod::getnextcategorizeddbrecord(wchar_t* name, int capacity, unsigned long index) {
  wchar_t none[1];
  if (name == nullptr || capacity < 1) {
    name = none;
    capacity = 1;
  }
  *name = L'\0';
  const int read = ReadRecordName(name, capacity, index) || ReadRecordName(name, capacity, index);
  utf8tounicode(name);
  return read;
}

void ipod::deleterecords(wchar_t*** names, unsigned long** values) {
  if (names != nullptr && *names != nullptr) {
    wchar_t** const array = *names;
    // The first element is the number of elements, which hosts in the field count in, and is
    // released like the others. The heap refuses it: no block lies at so small an address.
    const auto count = reinterpret_cast<std::uintptr_t>(array[0]);
    for (std::uintptr_t i = 0; i < count; ++i) LocalFree(array[i]);
    LocalFree(array);
  }
  if (values != nullptr && *values != nullptr) LocalFree(*values);
}
