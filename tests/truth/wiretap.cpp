// SPDX-License-Identifier: MIT
#include "wiretap.h"

#include <cstdio>
#include <string>
#include <utility>

#include "wire/text.h"

namespace truth {

using ipodwire::Packet;

namespace {

void Show(const ipodwire::Told& told) {
  std::string text =
      told.frame ? Describe(*told.frame) : ipodwire::HexBytes(told.observed.bytes, 32);
  for (const ipodwire::Note& note : told.notes) text += "  ! " + note.text;
  std::fprintf(stderr, "%6llu %9.3f %s %s\n", static_cast<unsigned long long>(told.observed.number),
               static_cast<double>(told.observed.time) / 1e9,
               told.observed.sender == ipodwire::Sender::kIpod ? "<" : ">", text.c_str());
}

}  // namespace

Wiretap::Wiretap(ipodcomm::virtual_platform::SerialDevice& device, bool shown)
    : device_(device), transcript_([this, shown](const ipodwire::Told& told) {
        if (shown) Show(told);
        evidence_.Add(told);
      }) {
  constexpr std::uint32_t kBaud = 57600;
  evidence_.set_baud(kBaud);
}

void Wiretap::Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) {
  Add(Packet::Event::kSent, {data, data + size}, now_us);
  device_.Receive(data, size, now_us);
}

std::vector<std::uint8_t> Wiretap::Transmit(std::int64_t now_us) {
  std::vector<std::uint8_t> bytes = device_.Transmit(now_us);
  // What came before the accessory did, nobody heard.
  if (!bytes.empty() && packet_.number > 0) Add(Packet::Event::kReceived, bytes, now_us);
  return bytes;
}

void Wiretap::LoseLine(const char* reason, std::int64_t now_us) {
  packet_.comments = {std::string("the line is gone: ") + reason};
  Add(Packet::Event::kStatus, {}, now_us);
}

std::vector<ipodwire::Finding> Wiretap::Findings() {
  transcript_.End();
  return FindingsOf(evidence_.evidence());
}

void Wiretap::Add(Packet::Event event, std::vector<std::uint8_t> bytes, std::int64_t now_us) {
  ++packet_.number;
  packet_.time = now_us * 1000;
  packet_.event = event;
  packet_.bytes = std::move(bytes);
  transcript_.Add(packet_);
}

}  // namespace truth
