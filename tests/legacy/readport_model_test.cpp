// SPDX-License-Identifier: MIT
// Reading frames from the legacy serial port against a plain model of it, on random bytes full of
// sync bytes, start bytes and zeros, with rooms and reads of every size, and reads that fail in
// between.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/properties.h"
#include "support/session_test.h"

namespace {

#if IPODCOMM_HAS_RAPIDCHECK

using test::Bytes;
using test::World;

constexpr std::size_t kMaxRoom = 600;

// What the calls of a run are to store, from the bytes that arrived.
class Model {
 public:
  explicit Model(Bytes arrived) : arrived_(std::move(arrived)) {}

  Bytes Read(std::size_t room) {
    stored_.clear();
    room_ = room;
    if (room == 0) return stored_;
    Seek(0xFF) && Seek(0x55) && ReadRest();
    return stored_;
  }

 private:
  // Takes a byte of the frame; false when the read ends.
  bool Accept() {
    if (next_ == arrived_.size()) return false;
    stored_.push_back(arrived_[next_++]);
    return stored_.size() < room_;
  }
  bool Seek(std::uint8_t wanted) {
    next_ = static_cast<std::size_t>(
        std::find(arrived_.begin() + static_cast<std::ptrdiff_t>(next_), arrived_.end(), wanted) -
        arrived_.begin());
    return Accept();
  }
  bool ReadRest() {
    if (!Accept()) return false;
    std::size_t body = stored_.back();
    if (body == 0) {
      if (!Accept() || !Accept()) return false;
      body = stored_[3] * 256U + stored_[4];
      if (body == 0) body = 65536;
    }
    for (std::size_t i = 0; i < body + 1; ++i) {
      if (!Accept()) return false;
    }
    return true;
  }

  Bytes arrived_;
  std::size_t next_ = 0;
  std::size_t room_ = 0;
  Bytes stored_;
};

rc::Gen<Bytes> Stream(rc::Gen<std::uint8_t> byte) {
  return rc::gen::resize(1500, rc::gen::container<Bytes>(std::move(byte)));
}

// Reads all of it by calls with drawn rooms; the model must store the same, and nothing may be
// written behind what is reported.
void ExpectAlike(const Bytes& arrived) {
  test::ScriptedDevice device;
  World world;
  world.line().Plug(device);
  ipodserial serial;
  const auto bytes_per_read = *rc::gen::element<std::uint32_t>(1, 2, 7, 256, 1024);
  const tagIPOD_LEGACY_CONDUCT conduct = {5, bytes_per_read, 0, 0, 0};
  RC_ASSERT(serial.SetConduct(&conduct) == 1);
  RC_ASSERT(serial.openport() == 1);
  device.Send(arrived);
  world.Advance(static_cast<std::int64_t>(arrived.size() + 1) * 174);
  Model model(arrived);
  for (int call = 0; call < 20; ++call) {
    const auto room = *rc::gen::element<std::size_t>(0, 1, 2, 3, 5, 6, 8, 64, 256, kMaxRoom);
    const auto failing = *rc::gen::inRange(1U, 40U);
    world.FailOnce("ReadFile", failing, 31);
    Bytes buffer(kMaxRoom + 1, 0xA5);
    const unsigned long count = serial.readport(buffer.data(), static_cast<int>(room));
    world.ClearFaults();
    RC_ASSERT(count <= room);
    RC_ASSERT(Bytes(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count)) ==
              model.Read(room));
    RC_ASSERT(std::all_of(buffer.begin() + static_cast<std::ptrdiff_t>(count), buffer.end(),
                          [](std::uint8_t byte) { return byte == 0xA5; }));
  }
  world.line().Unplug();
}

RC_GTEST_PROP(ReadPortModel, AgreesOnRandomBytes, ()) {
  ExpectAlike(*Stream(rc::gen::arbitrary<std::uint8_t>()));
}

RC_GTEST_PROP(ReadPortModel, AgreesOnTheBytesThatMatter, ()) {
  ExpectAlike(*Stream(rc::gen::element<std::uint8_t>(0xFF, 0x55, 0x00, 0x01, 0x02, 0x03)));
}

#else

TEST(ReadPortModel, AgreesOnRandomBytes) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(ReadPortModel, AgreesOnTheBytesThatMatter) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

}  // namespace
