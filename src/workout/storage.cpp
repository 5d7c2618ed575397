// SPDX-License-Identifier: MIT
// CIpodComm: files on the iPod, written through its Storage lingo.
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "protocol/text.h"
#include "session/exchange.h"
#include "session/heap_array.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kStorageLingo;
namespace storage = ipodcomm::storage;

namespace {

// A number of 64 bits whose two lowest bytes both repeat byte 3 instead of bytes 6 and 7. It is off
// by less than 64 KiB; hosts compare it with whole megabytes and show it, so it stays as they know
// it.
__int64 ReadSpace(const unsigned char* bytes) {
  const unsigned char low[] = {bytes[4], bytes[5], bytes[3], bytes[3]};
  return static_cast<__int64>(static_cast<std::uint64_t>(ipodcomm::ReadNumber32(bytes)) << 32 |
                              ipodcomm::ReadNumber32(low));
}

// No frame carries more; payloads are built for less than this only.
constexpr unsigned long kMaxLengthByte = 0xFF;

}  // namespace

int CIpodComm::Command_StorageGetIpodCaps(__int64* total_space, unsigned long* max_file_size,
                                          unsigned short* max_write_size, unsigned char* major,
                                          unsigned char* minor) {
  unsigned char reply[22] = {};
  if (!Exchange(Command(kStorageLingo, storage::kGetIpodCaps),
                Answer(storage::kRetIpodCaps, reply))) {
    return 0;
  }
  if (total_space != nullptr) *total_space = ReadSpace(reply);
  if (max_file_size != nullptr) *max_file_size = ipodcomm::ReadNumber32(reply + 8);
  if (max_write_size != nullptr) *max_write_size = ipodcomm::ReadNumber16(reply + 12);
  if (major != nullptr) *major = reply[20];
  if (minor != nullptr) *minor = reply[21];
  return 1;
}

int CIpodComm::Command_GetiPodFreeSpace(__int64* free_space) {
  unsigned char reply[8] = {};
  if (!Exchange(Command(kStorageLingo, storage::kGetIpodFreeSpace),
                Answer(storage::kRetIpodFreeSpace, reply))) {
    return 0;
  }
  *free_space = ReadSpace(reply);
  return 1;
}

// Sends `head` and then the caller's data; true when the exchange succeeded.
bool CIpodComm::ExchangeFileData(std::uint16_t command, const unsigned char (&head)[5],
                                 const unsigned char* data, unsigned long length,
                                 tagIPOD_READ_PARAMS read) {
  if (length > kMaxLengthByte) return false;
  const std::size_t size = sizeof head + length;
  const ipodcomm::HeapArray<unsigned char> payload(size);
  if (payload.data() == nullptr) return false;
  std::memcpy(payload.data(), head, sizeof head);
  if (length != 0) std::memcpy(payload.data() + sizeof head, data, length);
  return Exchange(Command(kStorageLingo, command, payload.data(), size), read);
}

int CIpodComm::Command_OpeniPodFeatureFile(unsigned char feature_type, unsigned long options,
                                           unsigned char* data, unsigned long length,
                                           unsigned char* handle) {
  storage_write_offset_ = 0;
  unsigned char head[5] = {feature_type};
  ipodcomm::WriteNumber32(head + 1, static_cast<std::uint32_t>(options));
  unsigned char reply[1] = {};
  if (!ExchangeFileData(storage::kOpenIpodFeatureFile, head, data, length,
                        Answer(storage::kRetIpodFileHandle, reply))) {
    NKDbgPrintfW(L"Failed to open iPod feature file!\r\n");
    return 0;
  }
  *handle = reply[0];
  return 1;
}

// The offset moves before anything is sent, so a failed write leaves a gap in the file, which
// nothing repairs. Hosts find the gap by it (GetWorkoutFile), and what follows keeps its place.
int CIpodComm::Command_WriteiPodFileData(unsigned char handle, unsigned char* data,
                                         unsigned long length) {
  const std::uint32_t offset = storage_write_offset_.fetch_add(static_cast<std::uint32_t>(length));
  unsigned char head[5] = {};
  ipodcomm::WriteNumber32(head, offset);
  head[4] = handle;
  unsigned char ack[3] = {};
  return ExchangeFileData(storage::kWriteIpodFileData, head, data, length,
                          Answer(storage::kAck, ack)) &&
         ack[0] == 0;
}

int CIpodComm::Command_CloseiPodFile(unsigned char handle) {
  const unsigned char data[] = {handle};
  unsigned char ack[3] = {};
  return Exchange(Command(kStorageLingo, storage::kCloseIpodFile, data),
                  Answer(storage::kAck, ack)) &&
         ack[0] == 0;
}

int CIpodComm::Command_ST_RetAccessoryCaps(unsigned char major, unsigned char minor) {
  storage_write_offset_ = 0;
  return ReturnStorageCaps(major, minor);
}

int CIpodComm::ReturnStorageCaps(unsigned char major, unsigned char minor) {
  unsigned char caps[22] = {};
  caps[19] = 0xFF;
  caps[20] = major;
  caps[21] = minor;
  tagIPOD_WRITE_PARAMS write = Command(kStorageLingo, storage::kRetAccessoryCaps, caps);
  return WriteCommand(&write) == IPOD_COMM_OK;
}

// Writes a text to the workout's file as at most 512 bytes of UTF-8. A longer one is cut between
// two characters, so that what is written next never completes half of one. Null, a text for which
// there was no memory, is a failed write.
int CIpodComm::WriteStorageFileString(const wchar_t* text) {
  constexpr std::size_t kTextBytes = 512;
  char utf8[kTextBytes + 1];
  const std::size_t length = text != nullptr ? ipodcomm::Utf8FromText(text, utf8, sizeof utf8) : 0;
  if (text == nullptr ||
      Command_WriteiPodFileData(open_file_handle_, reinterpret_cast<unsigned char*>(utf8),
                                static_cast<unsigned long>(length)) == 0) {
    ++failed_text_writes_;
    NKDbgPrintfW(L"Failed to write xml file data! [%s]\r\n", text);
    return 0;
  }
  return 1;
}
