// SPDX-License-Identifier: MIT
// ipod: the commands that write the iPod's feature file.
#include <algorithm>

#include "ipodcomm/ipod.h"
#include "legacy/payload.h"
#include "protocol/numbers.h"

using ipodcomm::Number32;

int ipod::command_storageopenipodfeaturefile() {
  constexpr std::uint32_t kOptions = IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENDDATA |
                                     IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLIPODINFO |
                                     IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLSIGNATURE;
  return SendSmall(IPOD_LINGO_STORAGE, IPOD_COMMAND_STORAGE_OPENIPODFEATUREFILE,
                   {IPOD_OPENIPODFEATUREFILE_FEATURE_GYMEQUIPMENT, Number32(kOptions),  //
                    '<', '/', 'g', 'y', 'm', 'D', 'a', 't', 'a', '>'});
}

// The offset goes ahead of the handle, and grows whether or not the write succeeds. iPods in the
// field are written to in this layout, and find what follows a lost write at its own place.
int ipod::command_storeagewriteipodfiledata(wchar_t* text, unsigned short count) {
  constexpr int kHeaderSize = 5;
  constexpr int kMaxPayload = 250;
  if (count > kMaxPayload - kHeaderSize || (text == nullptr && count != 0)) return 0;
  FillPayload({Number32(storage_write_offset_), storage_file_handle_});
  std::transform(text, text + count, payload_ + kHeaderSize,
                 [](wchar_t unit) { return static_cast<std::uint8_t>(unit); });
  storage_write_offset_ += count;
  payload_length_ = static_cast<std::uint16_t>(count + kHeaderSize);
  lingo_ = IPOD_LINGO_STORAGE;
  command_ = IPOD_COMMAND_STORAGE_WRITEIPODFILEDATA;
  return sendpacket();
}

int ipod::command_storagecloseipodfile() {
  const std::uint8_t handle = storage_file_handle_;
  storage_file_handle_ = 0;
  storage_write_offset_ = 0;
  return SendSmall(IPOD_LINGO_STORAGE, IPOD_COMMAND_STORAGE_CLOSEIPODFILE, {handle});
}
