// SPDX-License-Identifier: MIT
// ipod: reading a reply straight from the port, and its text.
#include <algorithm>

#include "ipodcomm/ipod.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "protocol/text.h"

using ipodcomm::FrameBytes;

namespace {

constexpr int kFrameCapacity = 256;
constexpr unsigned long kShortestExtendedFrame = 7;
// An iPod that asks this often in a row is not about to reply.
constexpr int kMostFramesPerReply = 32;

// A frame as it came; what lies past its end reads as 0.
struct ReceivedBytes {
  unsigned char bytes[kFrameCapacity] = {};
  unsigned long length = 0;

  FrameBytes frame() const { return {bytes, static_cast<std::uint32_t>(length)}; }
};

ReceivedBytes ReadFrame(ipodserial* serial) {
  ReceivedBytes received;
  received.length = serial->readport(received.bytes, kFrameCapacity);
  return received;
}

bool IsFrom(const FrameBytes& frame, std::uint8_t lingo, std::uint8_t command) {
  return frame[ipod::IPOD_PACKET_LINGO_LOC] == lingo &&
         frame[ipod::IPOD_PACKET_COMMAND_LOC] == command;
}

// A frame that breaks off before its command has none, not even command 0.
bool HasCommand(const FrameBytes& frame, std::uint8_t command) {
  return frame.length() > ipod::IPOD_PACKET_COMMAND_LOC &&
         frame[ipod::IPOD_PACKET_COMMAND_LOC] == command;
}

bool IsAcceptingAck(const FrameBytes& frame) {
  return frame[ipod::IPOD_PACKET_EXT_COMMAND_LOC_HIGH] == 0 &&
         frame[ipod::IPOD_PACKET_EXT_COMMAND_LOC_LOW] == ipod::IPOD_COMMAND_EXTENDEDACK &&
         frame[ipod::IPOD_ACKE_STATUS_LOC] == ipod::IPOD_ACKE_STATUS_OK;
}

// Weighs the high byte by ten, not by 256, in 8 bits: hosts in the field get every reply that this
// lets through.
std::uint8_t WeighedCommand(const FrameBytes& frame) {
  return static_cast<std::uint8_t>(frame[ipod::IPOD_PACKET_EXT_COMMAND_LOC_HIGH] * 10 +
                                   frame[ipod::IPOD_PACKET_EXT_COMMAND_LOC_LOW]);
}

// One byte into one character, from `position` on, as many as the length byte minus 2 says. That is
// one too many in a reply with a two-byte command, and too many from an offset on: the checksum
// then follows the text. The terminator goes into the buffer's last character and not behind the
// text: hosts in the field clear their buffers first, and iPods terminate what they send.
void CopyText(const FrameBytes& frame, std::uint32_t position, wchar_t* text,
              unsigned char capacity) {
  if (text == nullptr || capacity == 0) return;
  const int available = frame[ipod::IPOD_PACKET_PAYLOADLEN_LOC] - 2;
  for (int i = 0; i < available && i < capacity; ++i) {
    text[i] = static_cast<wchar_t>(frame[position + static_cast<std::uint32_t>(i)]);
  }
  text[capacity - 1] = L'\0';
}

}  // namespace

// The lingo of the reply is never compared: hosts in the field read replies of any lingo with it.
int ipod::extractdatafrompacket(unsigned char expected_command, wchar_t* text,
                                unsigned char capacity, unsigned char offset, int /*ignored*/) {
  const auto any = [](const FrameBytes&) { return true; };
  return ExtractReply(expected_command, any, text, capacity, offset);
}

// Frames that are not the reply are passed over for as long as they keep arriving; the first read
// that brings nothing ends the search. Acknowledgements are passed over like any other command that
// is not expected.
int ipod::ExtractReply(std::uint8_t command, bool (*is_reply)(const FrameBytes& frame),
                       wchar_t* text, std::uint8_t capacity, std::uint8_t offset) {
  for (;;) {
    ReceivedBytes received = ReadFrame(&serial_);
    if (received.length == 0) return 0;
    const FrameBytes frame = received.frame();
    if (AnswerRequest(frame) || !HasCommand(frame, command) ||
        VerifyReceivePacketChecksum(received.bytes, received.length) == 0 || !is_reply(frame)) {
      continue;
    }
    CopyText(frame, static_cast<std::uint32_t>(IPOD_PACKET_DATA_LOC) + offset, text, capacity);
    return 1;
  }
}

// The request for the Sports version is answered and yet not settled: hosts in the field that
// expect its number take the request for the reply.
bool ipod::AnswerRequest(const FrameBytes& frame) {
  if (IsFrom(frame, IPOD_LINGO_GENERAL, IPOD_COMMAND_GETACCESSORYINFO)) {
    command_returnaccessoryinfo(frame[IPOD_PACKET_DATA_LOC]);
    return true;
  }
  if (IsFrom(frame, IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_GETDEVICECAPS)) {
    command_sportsreturndevicecaps();
    return true;
  }
  if (IsFrom(frame, IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_GETDEVICEVERSION)) {
    command_sportsreturndeviceversion();
  }
  return false;
}

// Only under a conduct that says so: hosts in the field take the next frame for the reply, whatever
// it is. One that is damaged is no question.
bool ipod::AnswerQuestionInBetween(unsigned char* bytes, unsigned long length) {
  if (serial_.conduct_.answers_questions == 0) return false;
  if (VerifyReceivePacketChecksum(bytes, length) == 0) return false;
  const FrameBytes frame(bytes, static_cast<std::uint32_t>(length));
  return AnswerRequest(frame) ||
         IsFrom(frame, IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_GETDEVICEVERSION);
}

// A frame with a two-byte command, into a buffer of zeros. Returns its length, 0 when nothing of
// use came.
unsigned long ipod::ReadExtendedFrame(unsigned char* bytes) {
  unsigned long length = 0;
  for (int frames = 0; frames < kMostFramesPerReply; ++frames) {
    std::fill_n(bytes, kFrameCapacity, static_cast<unsigned char>(0));
    length = serial_.readport(bytes, kFrameCapacity);
    if (!AnswerQuestionInBetween(bytes, length)) break;
  }
  if (length >= kShortestExtendedFrame) return length;
  NKDbgPrintfW(L"Error reading port, purging rx...\r\n");
  serial_.purgerx();
  return 0;
}

int ipod::ExtractDataFromPacketExtended(unsigned short expected_command, wchar_t* text,
                                        unsigned char capacity, unsigned char offset,
                                        int /*ignored*/) {
  ReceivedBytes received;
  received.length = ReadExtendedFrame(received.bytes);
  if (VerifyReceivePacketChecksum(received.bytes, received.length) == 0) return 0;
  if (expected_command != IPOD_COMMAND_EXTENDEDACK && IsAcceptingAck(received.frame())) {
    received.length = ReadExtendedFrame(received.bytes);
    if (VerifyReceivePacketChecksum(received.bytes, received.length) == 0) return 0;
  }
  const FrameBytes frame = received.frame();
  if (WeighedCommand(frame) != expected_command) return 0;
  CopyText(frame, static_cast<std::uint32_t>(IPOD_PACKET_EXT_DATA_LOC) + offset, text, capacity);
  return 1;
}

int ipod::ExtractDataFromPacketExtendedRaw(unsigned short /*ignored_command*/, void* buffer,
                                           unsigned long count) {
  ReceivedBytes received;
  received.length = ReadExtendedFrame(received.bytes);
  if (VerifyReceivePacketChecksum(received.bytes, received.length) == 0) return 0;
  if (buffer == nullptr) return 1;
  const FrameBytes frame = received.frame();
  auto* bytes = static_cast<unsigned char*>(buffer);
  for (unsigned long i = 0; i < count; ++i) {
    bytes[i] = frame[static_cast<std::uint32_t>(IPOD_PACKET_EXT_DATA_LOC + i)];
  }
  return 1;
}

int ipod::VerifyReceivePacketChecksum(unsigned char* frame, unsigned long length) {
  if (frame == nullptr || length == 0) return 0;
  std::uint8_t sum = 0;
  for (unsigned long i = IPOD_PACKET_PAYLOADLEN_LOC; i + 1 < length; ++i) {
    sum = static_cast<std::uint8_t>(sum + frame[i]);
  }
  return frame[length - 1] == static_cast<std::uint8_t>(0x100 - sum) ? 1 : 0;
}

wchar_t* ipod::utf8tounicode(wchar_t* text) {
  constexpr std::size_t kCapacity = 512;
  if (text == nullptr) return nullptr;
  std::size_t length = 0;
  while (length <= kCapacity && text[length] != L'\0') ++length;
  // A text of exactly the capacity is converted whole; one that is longer loses a byte more than it
  // has to. Hosts in the field see as many characters.
  const bool cut = length > kCapacity;
  if (cut) length = kCapacity - 1;
  unsigned char narrow[kCapacity] = {};
  std::transform(text, text + length, narrow,
                 [](wchar_t unit) { return static_cast<unsigned char>(unit); });
  if (cut) length = ipodcomm::WholeUtf8(reinterpret_cast<const char*>(narrow), length);
  ipodcomm::TextFromUtf8(narrow, length, text, kCapacity);
  return text;
}
