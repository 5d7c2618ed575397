// SPDX-License-Identifier: MIT
// ipod: the iPod's monochrome display, and images on it.
#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "protocol/numbers.h"
#include "session/heap_array.h"

using ipodcomm::kIgnored;
using ipodcomm::ReplyByte;
using ipodcomm::Store;

namespace {

bool Fits(unsigned long header_size, unsigned long count) {
  constexpr unsigned long kMaxPayload = 247;
  return count <= kMaxPayload - header_size;
}

}  // namespace

// The image never leaves the accessory: its frames carry, at the length that the image would need,
// what the commands before left in the payload area, and lose their last two bytes. Hosts in the
// field go by the results, and iPods there keep the display that they have.

int ipod::command_setdisplayimagefirst(unsigned char /*pixel_format*/, unsigned short /*width*/,
                                       unsigned short /*height*/, unsigned long count,
                                       unsigned char* /*image*/) {
  constexpr unsigned long kHeaderSize = 11;
  return SendDisplayImage(kHeaderSize, count);
}

int ipod::command_setdisplayimagerest(unsigned short descriptor_index, unsigned long count,
                                      unsigned char* /*image*/) {
  constexpr unsigned long kHeaderSize = 2;
  if (!Fits(kHeaderSize, count)) return 0;
  ipodcomm::WriteNumber16(payload_, descriptor_index);
  return SendDisplayImage(kHeaderSize, count);
}

int ipod::SendDisplayImage(unsigned long header_size, unsigned long count) {
  if (!Fits(header_size, count)) return 0;
  lingo_ = IPOD_LINGO_EXTENDED;
  extended_command_ = IPOD_COMMAND_SETDISPLAYIMAGE;
  payload_length_ = static_cast<std::uint16_t>(header_size + count);
  return sendpacketextendedlarge(nullptr);
}

int ipod::getmonodisplayimagelimits(unsigned short* width, unsigned short* height,
                                    unsigned char* pixel_format) {
  if (!command_getmonodisplayimagelimits()) return 0;
  wchar_t reply[10] = {};
  const int read = ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNMONODISPLAYIMAGELIMITS, reply,
                                                 10, 0, kIgnored);
  // Stored without an answer as well, then as 0: hosts in the field read the limits, not the
  // result.
  Store(width, ipodcomm::ReplyNumber16(reply));
  Store(height, ipodcomm::ReplyNumber16(reply + 2));
  Store(pixel_format, ReplyByte(reply[4]));
  return read;
}

int ipod::setmonoimage() {
  unsigned short width = 0;
  unsigned short height = 0;
  unsigned char pixel_format = 0;
  if (!getmonodisplayimagelimits(&width, &height, &pixel_format)) return 0;
  // One bit per pixel, in words of 32 bits.
  const unsigned long row_bytes = (width + 31UL) / 32 * 4;
  const ipodcomm::HeapArray<unsigned char> row(row_bytes);
  if (row.data() == nullptr) return 0;
  for (unsigned long i = 0; i < row_bytes; ++i) row.data()[i] = static_cast<unsigned char>(i & 3);
  // The height goes where the width belongs, and the width where the height does. The frame carries
  // neither, so no iPod sees the difference.
  int sent = command_setdisplayimagefirst(pixel_format, height, width, row_bytes, row.data());
  for (unsigned short index = 1; sent && index < height; ++index) {
    sent = command_setdisplayimagerest(index, row_bytes, row.data());
  }
  return sent;
}
