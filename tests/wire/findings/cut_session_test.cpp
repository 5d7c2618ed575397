// SPDX-License-Identifier: MIT
// A session that is cut after every single byte, in each of the ways in which a session is: there
// is always a finding, and always the right one.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "wire/findings/findings.h"
#include "wire/transcript.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Packet;
using wire_test::Bytes;
using wire_test::Small;

constexpr ipodwire::Nanoseconds kMillisecond = 1'000'000;

struct Part {
  Packet::Event event;
  Bytes bytes;
};

std::vector<Part> Session() {
  const auto sent = [](const Bytes& content) { return Part{Packet::Event::kSent, Small(content)}; };
  const auto received = [](const Bytes& content) {
    return Part{Packet::Event::kReceived, Small(content)};
  };
  return {
      {Packet::Event::kSent, {0xFF}},
      sent({0x00, 0x38}),
      received({0x00, 0x02, 0x00, 0x38}),
      sent({0x00, 0x3B, 0x00, 0x01, 0x00}),
      received({0x00, 0x3C, 0x00, 0x01, 0x00}),
      sent({0x00, 0x07, 0x00, 0x02}),
      received({0x00, 0x08, 0x00, 0x02, 'A', 0x00}),
      sent({0x04, 0x00, 0x2C, 0x00, 0x03}),
      received({0x04, 0x00, 0x2D, 0x00, 0x03, 0x01}),
  };
}

std::size_t LengthOf(const std::vector<Part>& session) {
  std::size_t bytes = 0;
  for (const Part& part : session) bytes += part.bytes.size();
  return bytes;
}

// Tells a recording of it up to a byte, each byte in a packet of its own, and what comes then.
class CutSession {
 public:
  explicit CutSession(std::size_t bytes) {
    for (const Part& part : Session()) {
      for (const std::uint8_t& byte : part.bytes) {
        if (bytes-- == 0) return;
        received_ += part.event == Packet::Event::kReceived ? 1 : 0;
        // A sync byte alone may be anything.
        in_frame_ = part.event == Packet::Event::kReceived && &byte != &part.bytes.front() &&
                    &byte != &part.bytes.back();
        Add(part.event, {byte}, 1);
      }
    }
  }

  void LoseLine(const char* reason) {
    packet_.comments = {std::string("the line is gone: ") + reason};
    Add(Packet::Event::kStatus, {}, 1);
    packet_.comments.clear();
  }
  // As an accessory does whose iPod is gone.
  void AskInVain() {
    for (int i = 0; i < 3; ++i) Add(Packet::Event::kSent, Small({0x00, 0x0D, 0x00, 0x04}), 1000);
  }
  // "E502", or nothing.
  std::string MostImportant() {
    transcript_.End();
    const auto findings = FindingsOf(collector_.evidence());
    return findings.empty() ? "" : findings.front().code;
  }

  bool anything_received() const { return received_ > 0; }
  bool frame_received() const { return received_ >= 8; }
  bool in_received_frame() const { return in_frame_; }

 private:
  void Add(Packet::Event event, const Bytes& bytes, int after_ms) {
    ++packet_.number;
    packet_.time += after_ms * kMillisecond;
    packet_.event = event;
    packet_.bytes = bytes;
    transcript_.Add(packet_);
  }

  ipodwire::EvidenceCollector collector_;
  ipodwire::Transcript transcript_{[this](const ipodwire::Told& told) { collector_.Add(told); }};
  Packet packet_;
  std::size_t received_ = 0;
  bool in_frame_ = false;
};

TEST(ASessionCutAfterAnyByte, ByALineThatIsGoneSaysThat) {
  for (const char* reason : {"hung up", "Input/output error", "No such device"}) {
    for (std::size_t bytes = 0; bytes <= LengthOf(Session()); ++bytes) {
      CutSession session(bytes);
      session.LoseLine(reason);
      EXPECT_EQ(session.MostImportant(), "E502") << reason << " after " << bytes;
    }
  }
}

// The line stays, and nobody answers on it any more.
TEST(ASessionCutAfterAnyByte, ByAnIpodThatIsGoneSaysWhere) {
  for (std::size_t bytes = 0; bytes <= LengthOf(Session()); ++bytes) {
    CutSession session(bytes);
    session.AskInVain();
    const std::string code = session.MostImportant();
    if (!session.anything_received()) {
      EXPECT_EQ(code, "E201") << bytes;
    } else if (session.in_received_frame()) {
      EXPECT_EQ(code, "E501") << bytes;
    } else {
      EXPECT_EQ(code, session.frame_received() ? "E503" : "E203") << bytes;
    }
  }
}

}  // namespace
