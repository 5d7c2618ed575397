// SPDX-License-Identifier: MIT
// Every call of every platform service that opening, writing, reading and closing make, failing in
// turn: once, and for ever. Nothing hangs, nothing is left behind, results tell, and after the
// fault the port works.
#include <gmock/gmock.h>

#include <algorithm>

#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;
using ::testing::AnyOf;
using ::testing::IsEmpty;

constexpr DWORD kCode = 31;

class Faults : public ::testing::TestWithParam<const char*> {
 protected:
  // A world with a docked iPod, in which the `nth` call of the service fails from `Arm` on.
  struct Dock {
    Dock() { world.line().Plug(ipod); }
    ~Dock() { world.line().Unplug(); }
    Dock(const Dock&) = delete;
    Dock& operator=(const Dock&) = delete;

    void Arm(unsigned nth, bool for_ever) {
      calls_before = world.call_count(GetParam());
      for_ever ? world.FailFrom(GetParam(), nth, kCode) : world.FailOnce(GetParam(), nth, kCode);
    }
    bool Reached(unsigned nth) const { return world.call_count(GetParam()) - calls_before >= nth; }

    ScriptedDevice ipod;
    World world;
    unsigned calls_before = 0;
  };

  // Runs `scenario` in a new world with the 1st, 2nd, 3rd ... call failing until none is reached
  // any more; once with a single failure each and once failing for ever. Returns how many calls
  // there were.
  template <class Scenario>
  unsigned FailEachInTurn(Scenario scenario) {
    unsigned reached_most = 0;
    for (const bool for_ever : {false, true}) {
      bool reached = true;
      for (unsigned nth = 1; reached; ++nth) {
        SCOPED_TRACE(std::string(GetParam()) + " number " + std::to_string(nth) +
                     (for_ever ? " and all after it" : ""));
        Dock dock;
        {
          CIpodSerial serial;
          dock.Arm(nth, for_ever);
          reached = scenario(dock, serial, nth);
          if (reached) reached_most = std::max(reached_most, nth);
          dock.world.ClearFaults();
        }
        dock.world.Advance(3 * kSecond);
        EXPECT_THAT(dock.world.live_threads(), IsEmpty());
        test::DrainTraceLog();
      }
    }
    return reached_most;
  }

  static bool DecidesOpening() {
    const std::string service = GetParam();
    return service == "CreateFileW" || service == "SetCommState" || service == "SetCommTimeouts" ||
           service == "CreateThread";
  }
  static long Write(CIpodSerial& serial) {
    unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB};
    return serial.WritePacket(frame, sizeof frame);
  }
  // The port works: it sends, and what it receives is queued.
  static void ExpectUsable(Dock& dock, CIpodSerial& serial) {
    dock.world.ClearFaults();
    ASSERT_EQ(serial.Open(true), 0);
    dock.world.Advance(100 * kMillisecond);
    EXPECT_EQ(Write(serial), 0);
    dock.ipod.Send(test::Hex("FF 55 02 00 14 EA"));
    dock.world.Advance(100 * kMillisecond);
    tagSERIAL_PACKET packet = {};
    EXPECT_TRUE(serial.GetNextPacket(&packet, 100));
    EXPECT_EQ(test::Text(packet), "FF 55 02 00 14 EA");
  }
};

TEST_P(Faults, OfOpeningAreToldByItsResultOrDoNotMatter) {
  FailEachInTurn([](Dock& dock, CIpodSerial& serial, unsigned nth) {
    const long result = serial.Open(true);
    const bool reached = dock.Reached(nth);
    EXPECT_EQ(result, reached && DecidesOpening() ? static_cast<long>(kCode) : 0);
    EXPECT_EQ(test::DrainTraceLog().size(), result != 0 ? 1U : 0U);
    dock.world.Advance(100 * kMillisecond);
    const bool reached_later = dock.Reached(nth);
    ExpectUsable(dock, serial);
    return reached_later;
  });
}

TEST_P(Faults, OfWritingAreToldByItsResultOrDoNotMatter) {
  FailEachInTurn([](Dock& dock, CIpodSerial& serial, unsigned nth) {
    dock.world.ClearFaults();
    EXPECT_EQ(serial.Open(false), 0);
    dock.Arm(nth, false);
    const std::int64_t start_us = dock.world.now_us();
    const long result = Write(serial);
    EXPECT_LE(dock.world.now_us() - start_us, 30 * kMillisecond);
    const bool decides = std::string(GetParam()) == "WriteFile" && dock.Reached(nth);
    EXPECT_EQ(result, decides ? static_cast<long>(kCode) : 0);
    const bool reached = dock.Reached(nth);
    dock.world.ClearFaults();
    serial.Close();
    ExpectUsable(dock, serial);
    return reached;
  });
}

TEST_P(Faults, OfReopeningReadingAndClosingAreSurvived) {
  FailEachInTurn([](Dock& dock, CIpodSerial& serial, unsigned nth) {
    serial.Open(true);
    dock.ipod.Send(test::Hex("FF 55 02 00 13 EB"));
    dock.world.Advance(10 * kMillisecond);
    serial.Open(true);
    dock.world.Advance(10 * kMillisecond);
    Write(serial);
    unsigned char buffer[16] = {};
    unsigned long length = 0;
    EXPECT_THAT(serial.ReadPacket(buffer, sizeof buffer, &length, nullptr),
                AnyOf(0, 6, 0x80004005));
    serial.Close();
    dock.world.Advance(1500 * kMillisecond);
    // A read thread alone calls its services without end, so only so many are tried.
    return dock.Reached(nth) && nth < 12;
  });
}

// That the enumeration reaches what it is for.
TEST(FaultsOfOpening, AreTriedAtEveryDecidingCall) {
  World world;
  CIpodSerial serial;
  serial.Open(true);
  for (const char* service : {"CreateFileW", "SetCommState", "SetCommTimeouts", "SetCommMask",
                              "PurgeComm", "CreateThread"}) {
    EXPECT_GE(world.call_count(service), 1U) << service;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, Faults,
                         ::testing::Values("CreateFileW", "CloseHandle", "SetCommState",
                                           "SetCommTimeouts", "SetCommMask", "PurgeComm",
                                           "WriteFile", "CreateThread", "TerminateThread",
                                           "EventModify", "WaitForSingleObject", "ActivateDevice",
                                           "DeactivateDevice", "RegCreateKeyExW",
                                           "RegQueryValueExW", "RegSetValueExW", "RegCloseKey"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
