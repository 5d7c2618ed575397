// SPDX-License-Identifier: MIT
// CIpodComm: the identification tokens, each
//
//   length 00 subtype fields...        length counts the bytes behind it
//
// Every builder writes one token at `destination` and returns its size, or writes nothing and
// returns 0xFFFFFFFF when fewer bytes than it demands are left. It always demands at least one byte
// more than it writes, as hosts' buffers are sized.
#include "identify/tokens.h"

#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/TraceLog.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "session/exchange.h"

using ipodcomm::kNoRoom;

namespace {

// Subtypes.
constexpr unsigned char kIdentify = 0x00;
constexpr unsigned char kCapabilities = 0x01;
constexpr unsigned char kInfo = 0x02;
constexpr unsigned char kPreference = 0x03;
constexpr unsigned char kProtocol = 0x04;
constexpr unsigned char kBundleSeed = 0x05;
constexpr unsigned char kProtocolMetadata = 0x08;
constexpr unsigned char kAudioSamples = 0x0E;
constexpr unsigned char kVideoDelay = 0x0F;

// Kinds of accessory information (subtype 02) that no exported constant names.
constexpr unsigned char kMaxPayload = 0x09;
constexpr unsigned char kStatus = 0x0B;
constexpr unsigned char kRfCertification = 0x0C;

// Writes the three bytes that every token starts with. The length is taken modulo 256.
unsigned char* Begin(unsigned char* token, std::size_t length, unsigned char subtype) {
  *token++ = static_cast<unsigned char>(length);
  *token++ = 0x00;
  *token++ = subtype;
  return token;
}

unsigned long WriteTextToken(unsigned char* destination, unsigned long capacity,
                             unsigned char subtype, unsigned char number, std::string_view text) {
  const std::size_t size = text.size() + 5;
  if (capacity <= size) return kNoRoom;
  unsigned char* next = Begin(destination, text.size() + 4, subtype);
  *next++ = number;
  next = std::copy(text.begin(), text.end(), next);
  *next = 0x00;
  return static_cast<unsigned long>(size);
}

}  // namespace

unsigned long ipodcomm::WriteIdentifyToken(unsigned char* destination, unsigned long capacity,
                                           const LingoAnnouncement& announcement) {
  const std::size_t count = announcement.lingo_count;
  if (capacity <= count + 12) return kNoRoom;
  unsigned char* next = Begin(destination, count + 11, kIdentify);
  *next++ = static_cast<unsigned char>(count);
  next = std::copy_n(announcement.lingoes, count, next);
  next = std::copy_n(announcement.options, 4, next);
  std::copy_n(announcement.device_id, 4, next);
  return static_cast<unsigned long>(count + 12);
}

unsigned long ipodcomm::WriteInfoTextToken(unsigned char* destination, unsigned long capacity,
                                           unsigned char info_type, std::string_view text) {
  return WriteTextToken(destination, capacity, kInfo, info_type, text);
}

unsigned long CIpodComm::AddIdentifyToken(unsigned char* destination, unsigned long capacity,
                                          tagIdentifyToken& token) {
  return ipodcomm::WriteIdentifyToken(
      destination, capacity,
      {token.lingoes.data(), token.lingoes.size(), token.options, token.device_id});
}

unsigned long CIpodComm::AddAccCapsToken(unsigned char* destination, unsigned long capacity,
                                         unsigned char* caps) {
  if (capacity < 12) return kNoRoom;
  std::copy_n(caps, 8, Begin(destination, 0x0A, kCapabilities));
  return 11;
}

unsigned long CIpodComm::AddAccVersionToken(unsigned char* destination, unsigned long capacity,
                                            unsigned char info_type, unsigned char* version) {
  if (capacity < 8) return kNoRoom;
  unsigned char* next = Begin(destination, 0x06, kInfo);
  *next++ = info_type;
  std::copy_n(version, 3, next);
  return 7;
}

unsigned long CIpodComm::AddAccMaxPayloadToken(unsigned char* destination, unsigned long capacity,
                                               int size) {
  if (capacity < 7) return kNoRoom;
  unsigned char* next = Begin(destination, 0x05, kInfo);
  *next++ = kMaxPayload;
  ipodcomm::WriteNumber16(next, static_cast<std::uint16_t>(size));
  return 6;
}

unsigned long CIpodComm::AddAccStatusToken(unsigned char* destination, unsigned long capacity,
                                           unsigned char* status) {
  if (capacity < 9) return kNoRoom;
  unsigned char* next = Begin(destination, 0x07, kInfo);
  *next++ = kStatus;
  std::copy_n(status, 4, next);
  return 8;
}

// The length announces four certification bytes, of which three are written: the fourth is whatever
// the buffer holds. iPods in the field accept it.
unsigned long CIpodComm::AddAccRFCertToken(unsigned char* destination, unsigned long capacity,
                                           unsigned char* cert) {
  if (capacity < 9) return kNoRoom;
  unsigned char* next = Begin(destination, 0x07, kInfo);
  *next++ = kRfCertification;
  std::copy_n(cert, 3, next);
  return 8;
}

unsigned long CIpodComm::AddPreferenceToken(unsigned char* destination, unsigned long capacity,
                                            unsigned char class_id, unsigned char setting) {
  constexpr unsigned char kRestoreOnExit = 0x01;
  if (capacity < 7) return kNoRoom;
  unsigned char* next = Begin(destination, 0x05, kPreference);
  *next++ = class_id;
  *next++ = setting;
  *next = kRestoreOnExit;
  return 6;
}

unsigned long CIpodComm::AddEAPMetaToken(unsigned char* destination, unsigned long capacity,
                                         unsigned char protocol_index, unsigned char metadata) {
  if (capacity < 6) return kNoRoom;
  unsigned char* next = Begin(destination, 0x04, kProtocolMetadata);
  *next++ = protocol_index;
  *next = metadata;
  return 5;
}

// The byte argument is ignored: the subtype is always 0F, the only one that iPods know for this.
unsigned long CIpodComm::AddAVDelayToken(unsigned char* destination, unsigned long capacity,
                                         unsigned char /*unused*/, unsigned long delay) {
  if (capacity < 8) return kNoRoom;
  ipodcomm::WriteNumber32(Begin(destination, 0x06, kVideoDelay), static_cast<std::uint32_t>(delay));
  return 7;
}

unsigned long CIpodComm::AddAccNameToken(unsigned char* destination, unsigned long capacity,
                                         unsigned char info_type, std::string name) {
  return WriteTextToken(destination, capacity, kInfo, info_type, name);
}

unsigned long CIpodComm::AddEAPToken(unsigned char* destination, unsigned long capacity,
                                     unsigned char protocol_index, std::string protocol) {
  return WriteTextToken(destination, capacity, kProtocol, protocol_index, protocol);
}

// Demands two spare bytes, unlike the others: hosts' buffers are sized for it.
unsigned long CIpodComm::AddBundleSeedToken(unsigned char* destination, unsigned long capacity,
                                            std::string seed) {
  constexpr std::size_t kSize = 14;
  constexpr std::size_t kSeedCharacters = 10;
  if (capacity < kSize + 2) return kNoRoom;
  std::memset(destination, 0, kSize);
  std::copy_n(seed.begin(), std::min(seed.size(), kSeedCharacters),
              Begin(destination, kSize - 1, kBundleSeed));
  return kSize;
}

unsigned long CIpodComm::AddAudioSampleToken(unsigned char* destination, unsigned long capacity,
                                             std::vector<unsigned long> sample_rates) {
  const std::size_t size = 4 * sample_rates.size() + 3;
  if (capacity <= size) return kNoRoom;
  unsigned char* next = Begin(destination, size - 1, kAudioSamples);
  for (const unsigned long rate : sample_rates) {
    ipodcomm::WriteNumber32(next, static_cast<std::uint32_t>(rate));
    next += 4;
  }
  return static_cast<unsigned long>(size);
}

// Sends one packet of tokens: `39 count tokens...`, answered by `3A`.
bool CIpodComm::Command_SetFIDTokenValue(unsigned char* payload, unsigned long length) {
  unsigned char reply[64] = {};
  tagIPOD_READ_PARAMS read = ipodcomm::Answer(ipodcomm::general::kRetFidTokenValueAcks, reply);
  if (Exchange(ipodcomm::Command(ipodcomm::kGeneralLingo, ipodcomm::general::kSetFidTokenValues,
                                 payload, length),
               &read)) {
    return true;
  }
  if (read.received_command == ipodcomm::general::kAck) {
    CKORVATrace::LogSoftwareError(L"CIpodComm::Command_SetFIDTokenValue",
                                  L"Set FID Token Failed = %2x\r\n", reply[8]);
  }
  return false;
}
