// SPDX-License-Identifier: MIT
// One whole identification of each kind, told frame by frame: what the iPod sends, what the
// accessory sends, and every pause and wait of the host in between. Read this file first.
#include "identify/identification.h"

namespace {

using test::Identification;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Story : public Identification {
 protected:
  Story() { session_.SetModel("QZ"); }
};

// An iPod that takes tokens and supports Sports. From the acknowledged StartIDPS on every frame
// carries a transaction identifier, counted from 0, and the answers repeat it.
TEST_F(Story, IpodIsIdentifiedByTokens) {
  // StartIDPS: taken (status 0).
  Answer("FF 55 02 00 38 C6", "FF 55 04 00 02 00 38 C2");
  // The line's maximum payload: 504 bytes.
  Answer("FF 55 04 00 11 00 00 EB", "FF 55 06 00 12 00 00 01 F8 EF");
  // Options of the General lingo: none. Sports: supported. Extended Interface: track information.
  Answer("FF 55 05 00 4B 00 01 00 AF", "FF 55 0D 00 4C 00 01 00 00 00 00 00 00 00 00 00 A6");
  Answer("FF 55 05 00 4B 00 02 09 A5", "FF 55 0D 00 4C 00 02 09 00 00 00 00 00 00 00 02 9A");
  Answer("FF 55 05 00 4B 00 03 04 A9", "FF 55 0D 00 4C 00 03 04 00 00 00 00 00 00 00 02 9E");
  // The announcement alone: lingoes 0, 3, 9, 12 and 4, intermittent high power, device ID 0.
  const char* announcement =
      "FF 55 16 00 39 00 04 01 10 00 00 05 00 03 09 0C 04 00 00 00 04 00 00 00 00 77";
  Answer(announcement, "FF 55 09 00 3A 00 04 01 03 00 00 00 B5");
  // The other fifteen tokens.
  const char* tokens =
      "FF 55 86 00 39 00 05 0F "
      "0A 00 01 00 00 00 00 00 00 00 05 "                          // capabilities
      "10 00 02 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00 "        // name "Orvian Touch"
      "06 00 02 04 02 05 00 "                                      // firmware 2.5.0
      "06 00 02 05 02 05 00 "                                      // hardware 2.5.0
      "12 00 02 06 4F 72 76 69 61 6E 20 46 69 74 6E 65 73 73 00 "  // "Orvian Fitness"
      "06 00 02 07 51 5A 00 "                                      // model number "QZ"
      "0A 00 02 08 30 30 30 30 30 31 00 "                          // serial number "000001"
      "05 00 02 09 00 FF "                                         // maximum payload 255
      "07 00 02 0C 00 00 00 00 "                                   // RF certifications: none
      "05 00 03 01 00 01 05 00 03 02 00 01 05 00 03 03 01 01 "     // preferences, restored on exit
      "05 00 03 08 01 01 05 00 03 0A 01 01 05 00 03 00 01 01 67";
  Answer(tokens, "FF 55 08 00 3A 00 05 01 01 00 00 B7");
  // EndIDPS: status 0.
  Answer("FF 55 05 00 3B 00 06 00 BA", "FF 55 05 00 3C 00 06 00 B9");
  // The iPod supports more event notifications than the session wants; it gets those two.
  Answer("FF 55 04 00 4F 00 07 A6", "FF 55 0C 00 51 00 07 FF FF FF FF FF FF FF FF A4");
  Answer("FF 55 0C 00 49 00 08 00 00 00 00 00 00 02 04 9D", "FF 55 06 00 02 00 08 00 49 A7");

  EXPECT_EQ(Identify(1), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(session_.SupportsSports(), 1);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 504);
  EXPECT_EQ(steps_, 4);

  EXPECT_THAT(DrainSent(), ElementsAre("FF", "FF 55 02 00 38 C6", "FF 55 04 00 11 00 00 EB",
                                       "FF 55 05 00 4B 00 01 00 AF", "FF 55 05 00 4B 00 02 09 A5",
                                       "FF 55 05 00 4B 00 03 04 A9", announcement, tokens,
                                       "FF 55 05 00 3B 00 06 00 BA", "FF 55 04 00 4F 00 07 A6",
                                       "FF 55 0C 00 49 00 08 00 00 00 00 00 00 02 04 9D"));
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Supports Sports 1\n",
                                              ::testing::MatchesRegex("Time to do IDPS [0-9]+\n")));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Story, HostPausesBeforeTheTokens) {
  session_.SetModel("");
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(
      DrainHostCalls(),
      ElementsAre(
          "Sleep(100)", "WriteFile(FF)", "Sleep(20)",  // wakes the iPod's receiver
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 02 00 38 C6)", "WaitForSingleObject(1000)",
          "Sleep(300)",  // lets the iPod settle
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 04 00 11 00 00 EB)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 05 00 4B 00 01 00 AF)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 05 00 4B 00 02 09 A5)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 05 00 4B 00 03 04 A9)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)",
          "WriteFile(55 16 00 39 00 04 01 10 00 00 05 00 03 09 0C 04 00 00 00 00 00 00 00 00 7B)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", ::testing::StartsWith("WriteFile(55 84 00 39 00 05 0F "),
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 05 00 3B 00 06 00 BA)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 04 00 4F 00 07 A6)",
          "WaitForSingleObject(1000)",  //
          "WriteFile(FF)", "Sleep(20)", "WriteFile(55 0C 00 49 00 08 00 00 00 00 00 00 02 04 9D)",
          "WaitForSingleObject(1000)",
          "WaitForSingleObject(1000)"));  // for a General 03, which need not come
}

// An iPod that knows no tokens: it refuses StartIDPS and asks about the accessory on its own,
// ending with the model number, each time it is told the lingoes.
TEST_F(Story, IpodIsIdentifiedByLingoes) {
  // StartIDPS: bad parameter (status 4).
  Answer("FF 55 02 00 38 C6", "FF 55 04 00 02 04 38 BE");
  // The General lingo only, at intermittent high power: taken, then the iPod asks for the model.
  const char* general_only = "FF 55 0E 00 13 00 00 00 01 00 00 00 04 00 00 00 00 DA";
  Answer(general_only, "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 07 CF");
  // Lingo versions: General 1.09, Display Remote 1.05, Extended 1.14, Sports 1.01, Storage 1.02.
  Answer("FF 55 03 00 0F 00 EE", "FF 55 05 00 10 00 01 09 E1");
  Answer("FF 55 03 00 0F 03 EB", "FF 55 05 00 10 03 01 05 E2");
  Answer("FF 55 03 00 0F 04 EA", "FF 55 05 00 10 04 01 0E D8");
  Answer("FF 55 03 00 0F 09 E5", "FF 55 05 00 10 09 01 01 E0");
  Answer("FF 55 03 00 0F 0C E2", "FF 55 05 00 10 0C 01 02 DC");
  // All five lingoes: taken, and the model is asked for again.
  const char* all_lingoes = "FF 55 0E 00 13 00 00 12 19 00 00 00 04 00 00 00 00 B0";
  Answer(all_lingoes, "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 07 CF");
  // Preferences.
  for (const char* preference :
       {"FF 55 05 00 2B 03 01 01 CB", "FF 55 05 00 2B 01 00 01 CE", "FF 55 05 00 2B 02 00 01 CD",
        "FF 55 05 00 2B 08 01 01 C6", "FF 55 05 00 2B 09 00 01 C6", "FF 55 05 00 2B 0A 01 01 C4",
        "FF 55 05 00 2B 0F 01 01 BF", "FF 55 05 00 2B 00 01 01 CE"}) {
    Answer(preference, "FF 55 04 00 02 00 2B CF");
  }
  // Event notifications.
  Answer("FF 55 02 00 4F AF", "FF 55 0A 00 51 FF FF FF FF FF FF FF FF AD");
  Answer("FF 55 0A 00 49 00 00 00 00 00 00 02 04 A7", "FF 55 04 00 02 00 49 B1");

  EXPECT_EQ(Identify(1), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_EQ(session_.SupportsSports(), 1);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
  EXPECT_EQ(steps_, 5);

  const char* model = "FF 55 06 00 28 07 51 5A 00 20";
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF", "FF 55 02 00 38 C6", general_only, model, "FF 55 03 00 0F 00 EE",
                          "FF 55 03 00 0F 03 EB", "FF 55 03 00 0F 04 EA", "FF 55 03 00 0F 09 E5",
                          "FF 55 03 00 0F 0C E2", all_lingoes, model, "FF 55 05 00 2B 03 01 01 CB",
                          "FF 55 05 00 2B 01 00 01 CE", "FF 55 05 00 2B 02 00 01 CD",
                          "FF 55 05 00 2B 08 01 01 C6", "FF 55 05 00 2B 09 00 01 C6",
                          "FF 55 05 00 2B 0A 01 01 C4", "FF 55 05 00 2B 0F 01 01 BF",
                          "FF 55 05 00 2B 00 01 01 CE", "FF 55 02 00 4F AF",
                          "FF 55 0A 00 49 00 00 00 00 00 00 02 04 A7"));
  EXPECT_THAT(
      DrainDebugOutput(),
      ElementsAre("Lingo Version - General = 1.09\r\n", "Lingo Version - Display Remote = 1.05\r\n",
                  "Lingo Version - Extended = 1.14\r\n", "Lingo Version - Sports = 1.01\r\n",
                  "Lingo Version - Storage = 1.02\r\n"));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

}  // namespace
