// SPDX-License-Identifier: MIT
// Every end of the read thread restarts the serial driver: where its handle comes from, the calls
// in their order and at their times, and what failing calls change.
#include <optional>

#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr wchar_t kKey[] = L"Drivers\\Active\\18";

class DriverRestart : public SerialTest {
 protected:
  // Opens, lets the thread read a while, and closes.
  void CyclePort() {
    OpenForPackets();
    world_.Advance(3 * kMillisecond);
    serial_.Close();
  }
  // One more cycle's calls of the restart.
  std::vector<std::string> Restart() {
    CyclePort();
    world_.DrainCalls();
    world_.Record({"RegCreateKeyExW", "RegQueryValueExW", "RegSetValueExW", "RegCloseKey",
                   "DeactivateDevice", "ActivateDevice"});
    world_.Advance(2 * kSecond);
    world_.StopRecording();
    return world_.DrainCalls().text_with_results();
  }
  HANDLE Driver() { return CIpodSerialPeer::Driver(serial_); }
  std::optional<std::uint32_t> RegistryValue() { return world_.RegistryValue(kKey, L"Hnd"); }
};

TEST_F(DriverRestart, OfAnUnknownDriverWritesTheDefaultAndSkipsTheDeactivation) {
  EXPECT_THAT(Restart(),
              ElementsAre("RegCreateKeyExW(HKEY_LOCAL_MACHINE, \"Drivers\\Active\\18\") = 0",
                          "RegQueryValueExW(key, \"Hnd\") = 2",
                          "RegSetValueExW(key, \"Hnd\", 4294967295) = 0", "RegCloseKey(key) = 0",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver1"));
  EXPECT_EQ(RegistryValue(), 0xFFFFFFFFU);
  ASSERT_EQ(world_.drivers().size(), 1U);
  EXPECT_EQ(Driver(), world_.drivers()[0].handle);
}

TEST_F(DriverRestart, DeactivatesTheDriverThatTheRegistryNames) {
  const HANDLE driver = world_.ActivateDriver("Drivers\\Builtin\\Serial2", 18);
  world_.SetRegistryValue(kKey, L"Hnd",
                          static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(driver)));
  const auto calls = Restart();
  ASSERT_EQ(calls.size(), 5U);
  EXPECT_EQ(calls[2], "RegCloseKey(key) = 0");
  EXPECT_EQ(calls[3], "DeactivateDevice(driver1) = 1");
  EXPECT_EQ(calls[4], "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver2");
  EXPECT_FALSE(world_.drivers()[0].active);
  EXPECT_EQ(Driver(), world_.drivers()[1].handle);
  EXPECT_NE(RegistryValue(), 0xFFFFFFFFU);
}

TEST_F(DriverRestart, RegistryDefaultCountsAsUnknown) {
  world_.SetRegistryValue(kKey, L"Hnd", 0xFFFFFFFF);
  const auto calls = Restart();
  ASSERT_EQ(calls.size(), 4U);
  EXPECT_EQ(calls[1], "RegQueryValueExW(key, \"Hnd\") = 4294967295");
  EXPECT_EQ(calls[3], "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver1");
}

TEST_F(DriverRestart, AsksTheRegistryOnceAndThenKeepsItsOwnHandle) {
  Restart();
  EXPECT_THAT(Restart(),
              ElementsAre("DeactivateDevice(driver1) = 1",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver2"));
  EXPECT_THAT(Restart(),
              ElementsAre("DeactivateDevice(driver2) = 1",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver3"));
}

// The handle is known from when the registry has told it, not only once the driver is back.
TEST_F(DriverRestart, ThatBeginsDuringAnotherDoesNotAskTheRegistryAgain) {
  const HANDLE driver = world_.ActivateDriver("Drivers\\Builtin\\Serial2", 18);
  world_.SetRegistryValue(kKey, L"Hnd",
                          static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(driver)));
  CyclePort();
  world_.Advance(100 * kMillisecond);
  EXPECT_EQ(Driver(), driver);
  EXPECT_THAT(Restart(),
              ElementsAre("DeactivateDevice(driver1) = failed 6",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver2",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver3"));
}

TEST_F(DriverRestart, ActivatesOneSecondAfterDeactivating) {
  Restart();
  CyclePort();
  world_.Advance(2 * kSecond);
  const auto drivers = world_.drivers();
  ASSERT_EQ(drivers.size(), 2U);
  EXPECT_EQ(drivers[1].activated_us - drivers[0].deactivated_us, kSecond);
}

// The thread notices the closed port after its 2 ms pause, then comes the second.
TEST_F(DriverRestart, ComesOneSecondAfterClosing) {
  CyclePort();
  const std::int64_t closed_us = world_.now_us();
  world_.Advance(2 * kSecond);
  ASSERT_EQ(world_.drivers().size(), 1U);
  EXPECT_EQ(world_.drivers()[0].activated_us, closed_us + kSecond + kMillisecond);
}

TEST_F(DriverRestart, WithoutAReadThreadDoesNotHappen) {
  OpenForRawAccess();
  serial_.Close();
  world_.Advance(2 * kSecond);
  EXPECT_THAT(world_.drivers(), IsEmpty());
}

TEST_F(DriverRestart, GoesOnWhileThePortIsOpenedAgain) {
  CyclePort();
  world_.Advance(500 * kMillisecond);
  OpenForPackets();
  world_.Advance(kSecond);
  EXPECT_EQ(world_.drivers().size(), 1U);
  EXPECT_TRUE(ThreadRunning());
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(DriverRestart, HoldsNoLockMeanwhile) {
  CyclePort();
  world_.Advance(100 * kMillisecond);
  world_.Record({"EnterCriticalSection"});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.Open(false), 0); }), 0);
  unsigned char byte = 0xFF;
  EXPECT_EQ(Elapsed([&] { serial_.WritePacket(&byte, 1); }), 20 * kMillisecond);
}

// ---- Failing calls

TEST_F(DriverRestart, UnreadableRegistryCountsAsUnknown) {
  world_.FailFrom("RegCreateKeyExW", 1, 5);
  EXPECT_THAT(Restart(),
              ElementsAre("RegCreateKeyExW(HKEY_LOCAL_MACHINE, \"Drivers\\Active\\18\") = failed 5",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver1"));
}

TEST_F(DriverRestart, UnwritableRegistryChangesNothingElse) {
  world_.FailFrom("RegSetValueExW", 1, 5);
  const auto calls = Restart();
  ASSERT_EQ(calls.size(), 5U);
  EXPECT_EQ(calls[3], "RegCloseKey(key) = 0");
  EXPECT_EQ(calls[4], "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver1");
  EXPECT_EQ(RegistryValue(), std::nullopt);
}

TEST_F(DriverRestart, FailedDeactivationIsFollowedByTheActivationAllTheSame) {
  Restart();
  world_.FailOnce("DeactivateDevice", 1, 6);
  EXPECT_THAT(Restart(),
              ElementsAre("DeactivateDevice(driver1) = failed 6",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver2"));
}

// Whatever the activation returns becomes the handle, also none; only -1 means unknown.
TEST_F(DriverRestart, FailedActivationStoresItsNull) {
  world_.FailOnce("ActivateDevice", 1, 31);
  Restart();
  EXPECT_EQ(Driver(), nullptr);
  EXPECT_THAT(Restart(),
              ElementsAre("DeactivateDevice(null) = failed 6",
                          "ActivateDevice(\"Drivers\\Builtin\\Serial2\", 18) = driver1"));
}

}  // namespace
