// SPDX-License-Identifier: MIT
// The commands of the legacy interface: the whole frame of each, and what it leaves in the payload
// area for those after it.
#include <functional>
#include <ostream>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct CommandRow {
  const char* name;
  std::function<int(ipod&)> send;
  const char* frame;
  const char* written;  // what the command writes at the payload area's front
};

std::ostream& operator<<(std::ostream& out, const CommandRow& row) { return out << row.name; }

// The category is 5, and the command before went to lingo 0x63.
const CommandRow kGeneral[] = {
    {"Identify", [](ipod& it) { return it.command_identify(); },  //
     "FF 55 03 00 01 04 F8", "04"},
    {"RequestRemoteUiMode", [](ipod& it) { return it.command_requestremoteuimode(); },
     "FF 55 02 00 03 FB", ""},
    {"ExitRemoteUiMode", [](ipod& it) { return it.command_exitremoteuimode(); },
     "FF 55 02 00 06 F8", ""},
    {"RequestName", [](ipod& it) { return it.command_requestipodname(); },  //
     "FF 55 02 00 07 F7", ""},
    {"RequestSoftwareVersion", [](ipod& it) { return it.command_requestipodsoftwareversion(); },
     "FF 55 02 00 09 F5", ""},
    {"RequestSerialNumber", [](ipod& it) { return it.command_requestipodserialnum(); },
     "FF 55 02 00 0B F3", ""},
    {"RequestModelNumber", [](ipod& it) { return it.command_requestipodmodelnum(); },
     "FF 55 02 00 0D F1", ""},
    // Under the lingo of the command before, and always about lingo 0.
    {"RequestLingoVersion", [](ipod& it) { return it.command_requestlingoprotocolversion(4); },
     "FF 55 03 63 0F 00 8B", "00"},
    {"GetPreferenceOfVideoOut",
     [](ipod& it) { return it.command_getipodpreference(ipod::IPOD_PREFERENCE_VIDEOOUTSETTING); },
     "FF 55 03 00 29 00 D4", "00"},
    {"GetPreferenceOfSubtitles", [](ipod& it) { return it.command_getipodpreference(0x0C); },
     "FF 55 03 00 29 0C C8", "0C"},
    {"SetPreference", [](ipod& it) { return it.command_setipodpreference(8, 2); },
     "FF 55 05 00 2B 08 02 01 C5", "08 02 01"},
};

const CommandRow kAccessoryInfo[] = {
    {"Capabilities", [](ipod& it) { return it.command_returnaccessoryinfo(0); },
     "FF 55 07 00 28 00 00 00 02 F3 DC", "00 00 00 02 F3"},
    {"Name", [](ipod& it) { return it.command_returnaccessoryinfo(1); },
     "FF 55 0A 00 28 01 5A 45 50 52 41 4E 00 FD", "01 5A 45 50 52 41 4E 00"},
    {"IpodFirmware", [](ipod& it) { return it.command_returnaccessoryinfo(2); },
     "FF 55 03 00 28 02 D3", "02"},
    {"IpodLingoVersion", [](ipod& it) { return it.command_returnaccessoryinfo(3); },
     "FF 55 03 00 28 03 D2", "03"},
    {"Firmware", [](ipod& it) { return it.command_returnaccessoryinfo(4); },
     "FF 55 06 00 28 04 01 00 00 CD", "04 01 00 00"},
    {"Hardware", [](ipod& it) { return it.command_returnaccessoryinfo(5); },
     "FF 55 06 00 28 05 01 00 00 CC", "05 01 00 00"},
    {"Manufacturer", [](ipod& it) { return it.command_returnaccessoryinfo(6); },
     "FF 55 0A 00 28 06 5A 45 50 52 41 4E 00 F8", "06 5A 45 50 52 41 4E 00"},
    {"ModelNumber", [](ipod& it) { return it.command_returnaccessoryinfo(7); },
     "FF 55 0A 00 28 07 5A 45 50 52 41 4E 00 F7", "07 5A 45 50 52 41 4E 00"},
    {"SerialNumber", [](ipod& it) { return it.command_returnaccessoryinfo(8); },
     "FF 55 03 00 28 08 CD", "08"},
    {"MaxPayload", [](ipod& it) { return it.command_returnaccessoryinfo(9); },
     "FF 55 05 00 28 09 00 E0 EA", "09 00 E0"},
    {"AnUnknownType", [](ipod& it) { return it.command_returnaccessoryinfo(10); },
     "FF 55 03 00 28 0A CB", "0A"},
    {"TheLastType", [](ipod& it) { return it.command_returnaccessoryinfo(0xFF); },
     "FF 55 03 00 28 FF D6", "FF"},
};

const CommandRow kOtherLingoes[] = {
    {"SportsVersion", [](ipod& it) { return it.command_sportsreturndeviceversion(); },
     "FF 55 04 09 02 01 00 F0", "01 00"},
    {"SportsCapabilities", [](ipod& it) { return it.command_sportsreturndevicecaps(); },
     "FF 55 05 09 04 02 00 00 EC", "02 00 00"},
    {"GetSportsCapabilities", [](ipod& it) { return it.command_sportsgetipodcaps(); },
     "FF 55 02 09 83 72", ""},
    {"GetStorageCapabilities", [](ipod& it) { return it.command_storagegetipodcaps(); },
     "FF 55 02 0C 01 F1", ""},
    {"OpenFeatureFile", [](ipod& it) { return it.command_storageopenipodfeaturefile(); },
     "FF 55 11 0C 12 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 54",
     "02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E"},
    {"CloseFile", [](ipod& it) { return it.command_storagecloseipodfile(); },
     "FF 55 03 0C 08 00 E9", "00"},
    {"GetTrackInfoOnTheRemote",
     [](ipod& it) { return it.command_remote_getindexedplayingtrackinfo(5, 0x01020304, 0x1122); },
     "FF 55 09 03 12 05 01 02 03 04 11 22 A0", "05 01 02 03 04 11 22"},
};

const CommandRow kExtended[] = {
    // Its payload is empty; it clears the first byte all the same.
    {"GetPlayStatus", [](ipod& it) { return it.command_getplaystatus(); }, "FF 55 03 04 00 1C DD",
     "00"},
    {"GetChapterName", [](ipod& it) { return it.command_getcurrentplayingtrackchaptername(); },
     "FF 55 03 04 00 07 F2", ""},
    {"GetNumberOfRecords", [](ipod& it) { return it.command_getnumbercategorizeddbrecords(); },
     "FF 55 04 04 00 18 05 DB", "05"},
    {"RetrieveRecords",
     [](ipod& it) { return it.command_retrievecategorizeddbrecords(0x01020304); },
     "FF 55 0C 04 00 1A 05 01 02 03 04 00 00 00 01 C6", "05 01 02 03 04 00 00 00 01"},
    {"ResetSelection", [](ipod& it) { return it.command_resetdbselection(); },
     "FF 55 03 04 00 16 E3", ""},
    {"ResetSelectionOfAHierarchy", [](ipod& it) { return it.command_resetdbselectionhierarchy(2); },
     "FF 55 04 04 00 3B 02 BB", "02"},
    {"SelectRecord", [](ipod& it) { return it.command_selectdbrecord(0x01020304); },
     "FF 55 08 04 00 17 05 01 02 03 04 CE", "05 01 02 03 04"},
    {"SelectSortedRecord", [](ipod& it) { return it.command_selectsortdbrecord(0x01020304, 0xFF); },
     "FF 55 09 04 00 38 05 01 02 03 04 FF AD", "05 01 02 03 04 FF"},
    {"GetTrackIndex", [](ipod& it) { return it.command_getcurrentplayingtrackindex(); },
     "FF 55 03 04 00 1E DB", ""},
    {"GetTrackTitle", [](ipod& it) { return it.command_getindexedplayingtracktitle(0x01020304); },
     "FF 55 07 04 00 20 01 02 03 04 CB", "01 02 03 04"},
    {"GetTrackInfo",
     [](ipod& it) { return it.command_getindexedplayingtrackinfo(6, 0x01020304, 0x1122); },
     "FF 55 0A 04 00 0C 06 01 02 03 04 11 22 A3", "06 01 02 03 04 11 22"},
    {"GetDisplayLimits", [](ipod& it) { return it.command_getmonodisplayimagelimits(); },
     "FF 55 03 04 00 33 C6", ""},
    {"GetArtworkFormats", [](ipod& it) { return it.command_getartworkformats(); },
     "FF 55 03 04 00 0E EB", ""},
    // The Display Remote's number of the request.
    {"GetArtworkTimes",
     [](ipod& it) { return it.command_gettrackartworktimes(0x01020304, 0x1122, 0x3344, 0x5566); },
     "FF 55 0D 04 00 1F 01 02 03 04 11 22 33 44 55 66 61", "01 02 03 04 11 22 33 44 55 66"},
    {"GetArtworkData",
     [](ipod& it) { return it.command_gettrackartworkdata(0x01020304, 0x1122, 0xA1B2C3D4); },
     "FF 55 0D 04 00 10 01 02 03 04 11 22 A1 B2 C3 D4 B8", "01 02 03 04 11 22 A1 B2 C3 D4"},
};

class LegacyCommand : public LegacyTest, public ::testing::WithParamInterface<CommandRow> {
 protected:
  LegacyCommand() {
    for (int i = 0; i < 256; ++i) ipodPeer::Payload(legacy_)[i] = Left(i);
    ipodPeer::Lingo(legacy_) = 0x63;
    ipodPeer::Category(legacy_) = 5;
    world_.Record({"WriteFile", "Sleep", "ReadFile"});
  }
  int Command() { return GetParam().send(legacy_); }
  // What the commands before left at a place of the payload area.
  static std::uint8_t Left(int position) { return static_cast<std::uint8_t>(0xFF - position); }
};

INSTANTIATE_TEST_SUITE_P(General, LegacyCommand, ::testing::ValuesIn(kGeneral), test::RowName());
INSTANTIATE_TEST_SUITE_P(Answering, LegacyCommand, ::testing::ValuesIn(kAccessoryInfo),
                         test::RowName());
INSTANTIATE_TEST_SUITE_P(OtherLingoes, LegacyCommand, ::testing::ValuesIn(kOtherLingoes),
                         test::RowName());
INSTANTIATE_TEST_SUITE_P(Extended, LegacyCommand, ::testing::ValuesIn(kExtended), test::RowName());

TEST_P(LegacyCommand, SendsItsFrameAndReadsNothing) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Command(), 1); }), 5 * kMillisecond);
  const std::string rest = std::string(GetParam().frame).substr(3);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)", "WriteFile(port1, " + rest + ")"));
}

TEST_P(LegacyCommand, WritesItsPayloadAndLeavesTheRestOfTheArea) {
  Command();
  test::Bytes expected = test::Hex(GetParam().written);
  for (int i = static_cast<int>(expected.size()); i < 256; ++i) expected.push_back(Left(i));
  EXPECT_EQ(Payload(256), test::ToHex(expected));
}

TEST_P(LegacyCommand, FailsWhenTheFrameIsNotWrittenAndDoesNotTryAgain) {
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(Command(), 0);
  EXPECT_EQ(world_.DrainCalls().To({"WriteFile"}).all().size(), 2U);
}

TEST_P(LegacyCommand, FailsOnAClosedPort) {
  legacy_.closeport();
  EXPECT_EQ(Command(), 0);
}

// ---- What only some of them do

class LegacyCommands : public LegacyTest {};

TEST_F(LegacyCommands, SelectionsTellTheirFirstPayloadBytesBeforeTheySend) {
  ipodPeer::Category(legacy_) = 3;
  world_.Record({"NKDbgPrintfW", "WriteFile"});
  legacy_.command_selectdbrecord(0xFFFEFDFC);
  legacy_.command_selectsortdbrecord(10, 4);
  EXPECT_THAT(
      world_.DrainRecord(),
      ElementsAre("NKDbgPrintfW(\"SelectDBRecord, Data 0-4, 3 255 254 253 252\n\")",
                  "WriteFile(port1, FF)", "WriteFile(port1, 55 08 04 00 17 03 FF FE FD FC E4)",
                  "NKDbgPrintfW(\"SelectSortDBRecord, Data 0-4, 3 0 0 0 10\n\")",
                  "WriteFile(port1, FF)", "WriteFile(port1, 55 09 04 00 38 03 00 00 00 0A 04 AA)"));
}

TEST_F(LegacyCommands, NoOtherCommandPrints) {
  for (const auto* rows : {&kGeneral[0], &kAccessoryInfo[0], &kOtherLingoes[0]}) {
    for (int i = 0; i < 7; ++i) rows[i].send(legacy_);
  }
  for (const CommandRow& row : kExtended) {
    if (std::string_view(row.name).substr(0, 6) != "Select") row.send(legacy_);
  }
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(LegacyCommands, LingoVersionFollowsTheLingoOfTheCommandBefore) {
  legacy_.command_getplaystatus();
  legacy_.command_requestlingoprotocolversion(9);
  legacy_.command_sportsgetipodcaps();
  legacy_.command_requestlingoprotocolversion(9);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 04 00 1C DD", "FF 55 03 04 0F 00 EA",
                                       "FF 55 02 09 83 72", "FF 55 03 09 0F 00 E5"));
}

TEST_F(LegacyCommands, LargeNumbersGoOutAs32Bits) {
  legacy_.command_getindexedplayingtracktitle(0xFFFFFFFF);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 04 00 20 FF FF FF FF D9"));
}

}  // namespace
