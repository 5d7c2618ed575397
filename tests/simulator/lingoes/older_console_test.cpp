// SPDX-License-Identifier: MIT
// Proves what consoles from before the tokens rely on: the older identification without transaction
// identifiers, model ids, and an iPod that keeps its state whatever happens to their port.

#include <gtest/gtest.h>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kOldest[] = "FF 55 03 00 01 04 F8";
constexpr char kLingoes[] = "FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2";
constexpr char kIdentified[] = "FF 55 04 00 02 00 13 E7";

Settings AskingSettings() {
  Settings settings = QuietSettings();
  settings.asks_accessory = true;
  return settings;
}

TEST(OlderConsole, IdentifiesWithoutIdentifiers) {
  IpodUnderTest dock(AskingSettings());
  EXPECT_EQ(dock.Exchange(kOldest), "");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 0D F1"),
            "FF 55 0E 00 0E 00 14 00 00 4D 42 35 39 38 4C 4C 00 03");
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 12 1D 00 00 00 00 00 00 00 00 B0"), kIdentified);
  EXPECT_EQ(dock.ipod.announced_lingoes(), 0x121Du);
  EXPECT_FALSE(dock.ipod.identifiers_on());
  EXPECT_EQ(dock.Exchange("FF 55 02 00 05 F9"), "FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 1C DD"),
            "FF 55 0C 04 00 1D 00 00 00 00 00 00 00 00 00 D3");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(OlderConsole, LeavesIdentifiersBehind) {
  IpodUnderTest dock;
  dock.IdentifyByTokens();
  EXPECT_TRUE(dock.ipod.identifiers_on());
  dock.Exchange(kOldest);
  dock.Exchange(kLingoes);
  EXPECT_FALSE(dock.ipod.identifiers_on());
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F7"), "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(OlderConsole, IsNotAskedAboutItself) {
  IpodUnderTest dock(AskingSettings());
  dock.Exchange(kOldest);
  EXPECT_EQ(dock.Exchange(kLingoes), kIdentified);
  EXPECT_EQ(dock.Read(10 * kSecond), "");
}

TEST(OlderConsole, CanBeAskedAboutItself) {
  Settings settings = AskingSettings();
  settings.asks_oldest_accessories = true;
  IpodUnderTest dock(settings);
  dock.Exchange(kOldest);
  EXPECT_EQ(dock.Exchange(kLingoes), kIdentified);
  EXPECT_EQ(dock.Read(), "FF 55 03 00 27 00 D6");
}

TEST(OlderConsole, QuestionsEndWhenItBeginsTheOldestWay) {
  IpodUnderTest dock(AskingSettings());
  EXPECT_EQ(dock.Exchange(kLingoes), kIdentified);
  EXPECT_EQ(dock.Read(), "FF 55 03 00 27 00 D6");
  dock.Exchange(kOldest);
  dock.Exchange(kLingoes);
  EXPECT_EQ(dock.Read(10 * kSecond), "");
  dock.Exchange("FF 55 02 00 07 F7");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(OlderConsole, LeavesTheRemoteInterfaceBeforeItIdentifies) {
  IpodUnderTest dock;
  EXPECT_EQ(dock.Exchange("FF 55 02 00 03 FB"), "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(dock.Exchange("FF 55 02 00 06 F8"), "FF 55 04 00 02 00 06 F4");
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Exchange("FF 55 02 00 05 F9");
  EXPECT_EQ(dock.Mistakes(), "command before identification");
}

TEST(OlderConsole, ModelIdIsASetting) {
  for (const auto& [id, answer] :
       {std::pair<std::uint32_t, const char*>{
            0x00100001, "FF 55 0E 00 0E 00 10 00 01 4D 42 35 39 38 4C 4C 00 06"},
        {0x00170002, "FF 55 0E 00 0E 00 17 00 02 4D 42 35 39 38 4C 4C 00 FE"}}) {
    Settings settings = QuietSettings();
    settings.model_id = id;
    IpodUnderTest dock(settings);
    dock.Identify();
    EXPECT_EQ(dock.Exchange("FF 55 02 00 0D F1"), answer);
  }
}

}  // namespace
}  // namespace ipodsim
