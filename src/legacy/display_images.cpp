// SPDX-License-Identifier: MIT
// ipod: the commands that show an image on the iPod's display.
#include "ipodcomm/ipod.h"
#include "protocol/numbers.h"

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
