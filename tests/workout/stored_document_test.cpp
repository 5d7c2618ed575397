// SPDX-License-Identifier: MIT
// Stored workouts keep to the schema, up to the largest numbers that fit a frame; what is cut short
// or was never right does not.
#include "workout/stored_document.h"

#include <cstdlib>

namespace {

using test::kSecond;
using test::Moment;
using test::Names;
using test::StoredDocument;
using ::testing::EndsWith;
using ::testing::HasSubstr;

TEST_F(StoredDocument, IsWhatWasWrittenAndWhatTheIpodAppends) {
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  Moment moment;
  moment.event = IPOD_INTERVAL_TYPE_START;
  ASSERT_EQ(Record(moment), 1);
  ASSERT_EQ(Finish(moment), 1);
  EXPECT_EQ(Content("gym-0001.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<gymData>\n"
            "\t<vers>1</vers>\n"
            "\t<equipmentInfo>\n"
            "\t\t<manufacturerID>1234</manufacturerID>\n"
            "\t\t<manufacturerName>Gym</manufacturerName>\n"
            "\t\t<type>Treadmill</type>\n"
            "\t\t<model>T1</model>\n"
            "\t\t<serialNumber>0001</serialNumber>\n"
            "\t</equipmentInfo>\n"
            "\t<userInfo>\n"
            "\t\t<kg>70.0</kg>\n"
            "\t</userInfo>\n"
            "\t<interval>\n"
            "\t\t<event>start</event>\n"
            "\t\t<sec>60</sec>\n"
            "\t\t<kCal>12.50</kCal>\n"
            "\t\t<km>0.25</km>\n"
            "\t\t<pace>240</pace>\n"
            "\t\t<incline>1.5</incline>\n"
            "\t\t<bpm>120</bpm>\n"
            "\t\t<level>7</level>\n"
            "\t</interval>\n"
            "\t<workoutSummary>\n"
            "\t\t<sec>60</sec>\n"
            "\t\t<kCal>12.50</kCal>\n"
            "\t\t<km>0.25</km>\n"
            "\t\t<pace>240</pace>\n"
            "\t\t<bpm>120</bpm>\n"
            "\t</workoutSummary>\n"
            "\t<iPodInfo>\n"
            "\t\t<model>MB598LL</model>\n"
            "\t\t<softwareVersion>1.0.4</softwareVersion>\n"
            "\t\t<serialNumber>5U8250SIM01</serialNumber>\n"
            "\t</iPodInfo>\n"
            "\t<signature>7A1ACF18BE886183</signature>\n"
            "</gymData>");
  ExpectValid("gym-0001.xml");
  EXPECT_EQ(ipod_.free_space(),
            ipod_.settings().storage.free_space - Content("gym-0001.xml").size());
}

class StoredDocuments : public StoredDocument,
                        public ::testing::WithParamInterface<tagIPOD_EQUIPMENT_TYPE> {};

TEST_P(StoredDocuments, KeepToTheSchemaWithEveryDistanceSpeedAndEvent) {
  int number = 0;
  for (const auto distance : {IPOD_DISTANCE_TYPE_KM, IPOD_DISTANCE_TYPE_FLOORS}) {
    for (const auto speed : {IPOD_SPEED_TYPE_PACE, IPOD_SPEED_TYPE_SPM, IPOD_SPEED_TYPE_RPM}) {
      Moment moment;
      moment.distance_type = distance;
      moment.speed_type = speed;
      WorkOut(GetParam(), moment);
      ExpectValid("gym-000" + std::to_string(++number) + ".xml");
    }
  }
  EXPECT_EQ(ipod_.feature_files().Names().size(), 6U);
}

INSTANTIATE_TEST_SUITE_P(Equipment, StoredDocuments,
                         ::testing::Values(IPOD_EQUIPMENT_TYPE_TREADMILL,
                                           IPOD_EQUIPMENT_TYPE_ELLIPTICAL,
                                           IPOD_EQUIPMENT_TYPE_STEPPER, IPOD_EQUIPMENT_TYPE_BIKE,
                                           IPOD_EQUIPMENT_TYPE_OTHER));

TEST_F(StoredDocument, KeepsToTheSchemaWithTheLargestNumbersThatFit) {
  // The interval is 246 bytes: with a transaction identifier no more fit a frame.
  Moment moment;
  moment.event = IPOD_INTERVAL_TYPE_CONTINUE;
  moment.seconds = 2147483647;
  moment.kcal = 9e10;
  moment.distance = 9e10;
  moment.speed = 1e300;
  moment.incline = -9e11;
  moment.bpm = 2147483647;
  moment.level = 2147483647;
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_BIKE, 1e15), 1);
  const std::size_t before = Content("gym-0001.xml").size();
  ASSERT_EQ(Record(moment), 1);
  EXPECT_EQ(Content("gym-0001.xml").size() - before, 246U);
  ASSERT_EQ(Finish(moment), 1);
  ExpectValid("gym-0001.xml");
  EXPECT_THAT(Content("gym-0001.xml"), HasSubstr("\t\t<kg>1000000000000000.0</kg>\n"));
  EXPECT_THAT(Content("gym-0001.xml"), HasSubstr("\t\t<pace>2147483647</pace>\n"));
}

TEST_F(StoredDocument, KeepsToTheSchemaWithTheSmallestNumbers) {
  Moment moment;
  moment.seconds = 0;
  moment.kcal = 0;
  moment.distance = 0;
  moment.speed = 0;
  moment.incline = -0.04;
  moment.bpm = 1;
  moment.level = 0;
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_OTHER, 0), 1);
  ASSERT_EQ(Record(moment), 1);
  moment.bpm = 0;
  ASSERT_EQ(Finish(moment), 1);
  ExpectValid("gym-0001.xml");
}

TEST_F(StoredDocument, KeepsToTheSchemaWithNamesInAnyScriptAndEscapedMarkup) {
  Names names;
  names.manufacturer_id = L"";
  names.manufacturer_name = L"Müller &amp; 株式会社 &lt;Söhne&gt;";
  names.model = L"Пробег 🏃";
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL, 70, names), 1);
  ASSERT_EQ(Finish({}), 1);
  ExpectValid("gym-0001.xml");
  EXPECT_THAT(Content("gym-0001.xml"),
              HasSubstr("<manufacturerName>Müller &amp; 株式会社 &lt;Söhne&gt;</"));
  EXPECT_THAT(Content("gym-0001.xml"), HasSubstr("<model>Пробег 🏃</model>"));
}

TEST_F(StoredDocument, KeepsToTheSchemaWithTheLongestNameThatFits) {
  Names names;
  // 40 bytes of tags around it; a line of 246 bytes fits.
  names.manufacturer_name = std::wstring(206, L'x');
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL, 70, names), 1);
  ASSERT_EQ(Finish({}), 1);
  ExpectValid("gym-0001.xml");
  EXPECT_THAT(Content("gym-0001.xml"),
              HasSubstr("\t\t<manufacturerName>" + std::string(206, 'x') + "</"));
}

TEST_F(StoredDocument, IsNoXmlWithMarkupThatTheHostDidNotEscape) {
  Names names;
  names.model = L"A<B";
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL, 70, names), 1);
  ASSERT_EQ(Finish({}), 1);
  EXPECT_THAT(Content("gym-0001.xml"), HasSubstr("\t\t<model>A<B</model>\n"));
  EXPECT_EQ(Check("gym-0001.xml").status, 1);
}

TEST_F(StoredDocument, CutShortByUnpluggingIsNoXmlAndTheNextOneIsWhole) {
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  ASSERT_EQ(Record({}), 1);
  ipod_.Unplug(world_.now_us());
  EXPECT_EQ(Record({}), 0);
  EXPECT_EQ(Finish({}), 0);
  const std::string left = Content("gym-0001.xml");
  EXPECT_THAT(left, EndsWith("\t</interval>\n"));
  EXPECT_EQ(Check("gym-0001.xml").status, 1);
  ipod_.Replug(world_.now_us());
  EXPECT_NE(session_.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr), 0);
  world_.Advance(2 * kSecond);
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  ASSERT_EQ(Finish({}), 1);
  EXPECT_EQ(Content("gym-0001.xml"), left);
  ExpectValid("gym-0002.xml");
}

TEST_F(StoredDocument, BreaksTheSchemaWithNegativeTimesAndWithWhatIsNoNumber) {
  Moment negative;
  negative.seconds = -1;
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  ASSERT_EQ(Record(negative), 1);
  ASSERT_EQ(Finish({}), 1);
  EXPECT_EQ(Check("gym-0001.xml").status, 3);
  Moment nothing;
  nothing.kcal = std::strtod("nan", nullptr);
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  ASSERT_EQ(Record(nothing), 1);
  ASSERT_EQ(Finish({}), 1);
  EXPECT_EQ(Check("gym-0002.xml").status, 3);
  expected_mistakes_ = {"bad workout document", "bad workout document"};
}

TEST_F(StoredDocument, SchemaNoticesEveryChange) {
  ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
  ASSERT_EQ(Record({}), 1);
  ASSERT_EQ(Finish({}), 1);
  const std::string name = "gym-0001.xml";
  ExpectInvalidWith(name, "<vers>1</vers>", "<vers>2</vers>");
  ExpectInvalidWith(name, "\t\t<type>Treadmill</type>\n", "");
  ExpectInvalidWith(name, "Treadmill", "Rower");
  ExpectInvalidWith(name, "70.0", "70");
  ExpectInvalidWith(name, "continue", "rest");
  ExpectInvalidWith(name, "12.50", "12.5");
  ExpectInvalidWith(name, "\t\t<km>0.25</km>\n", "");
  ExpectInvalidWith(name, "\t\t<km>0.25</km>\n", "\t\t<kCal>12.50</kCal>\n");
  ExpectInvalidWith(name, "240", "240.0");
  ExpectInvalidWith(name, "<incline>1.5", "<incline>+1.5");
  ExpectInvalidWith(name, "<bpm>120", "<bpm>0");
  ExpectInvalidWith(name, "<level>7", "<level>-1");
  ExpectInvalidWith(name, "<gymData>\n", "<gymData>\n\t<other/>\n");
  ExpectInvalidWith(name, "\t<signature>", "\t<signature>x");
}

class QuestionedSession : public StoredDocument {
 protected:
  QuestionedSession() : StoredDocument(Asking()) {}
  static ipodsim::Settings Asking() {
    ipodsim::Settings settings;
    settings.profile = ipodsim::Profile::kClassic;
    settings.asks_during_session = true;
    return settings;
  }
};

// Without transaction identifiers; with them the answer to a question makes the session miss the
// identifier of what it waits for.
TEST_F(QuestionedSession, StoresWorkoutsThoughTheIpodAsksInBetween) {
  for (const char* const name : {"gym-0001.xml", "gym-0002.xml"}) {
    ASSERT_EQ(Start(IPOD_EQUIPMENT_TYPE_TREADMILL), 1);
    ASSERT_EQ(Record({}), 1);
    ASSERT_EQ(Finish({}), 1);
    ExpectValid(name);
  }
  // Long after; what was not answered would be a mistake by now.
  world_.Advance(5 * kSecond);
  wchar_t ipod_name[64] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(ipod_name, 64), 1);
}

}  // namespace
