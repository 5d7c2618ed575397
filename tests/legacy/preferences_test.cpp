// SPDX-License-Identifier: MIT
// The iPod's preferences: requests, answers, every setting's text, and the video output.
#include <algorithm>
#include <iterator>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;

constexpr const char* kGetConnection = "FF 55 03 00 29 08 CC";
constexpr const char* kSetVideoOut = "FF 55 05 00 2B 00 01 01 CE";

class LegacyPreferences : public LegacyTest {
 protected:
  LegacyPreferences() { std::fill(std::begin(text_), std::end(text_), L'x'); }

  wchar_t text_[ipod::SIZE_IPODPREFERENCES];
  unsigned char setting_ = 7;
};

TEST_F(LegacyPreferences, SettingIsTheSecondReplyByte) {
  Answer(kGetConnection, "FF 55 04 00 2A 08 03 C7");
  EXPECT_EQ(legacy_.loadipodpreference(8, &setting_), 1);
  EXPECT_EQ(setting_, 3);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetConnection));
}

TEST_F(LegacyPreferences, ReplyForAnotherClassFailsAndTouchesNothing) {
  Answer(kGetConnection, "FF 55 04 00 2A 03 01 CE");
  EXPECT_EQ(legacy_.loadipodpreference(8, &setting_), 0);
  EXPECT_EQ(setting_, 7);
}

TEST_F(LegacyPreferences, UnansweredRequestFailsAndTouchesNothing) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.loadipodpreference(0, &setting_), 0); }),
            kSilenceUs);
  EXPECT_EQ(setting_, 7);
}

TEST_F(LegacyPreferences, RequestThatCannotBeSentIsNotAwaited) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.loadipodpreference(0, &setting_), 0); }),
            5 * kMillisecond);
  EXPECT_EQ(setting_, 7);
}

TEST_F(LegacyPreferences, ReplyLongerThanItsFiveCharactersIsCut) {
  Answer(kGetConnection, "FF 55 0B 00 2A 08 02 03 04 05 06 07 08 09 97");
  EXPECT_EQ(legacy_.loadipodpreference(8, &setting_), 1);
  EXPECT_EQ(setting_, 2);
}

TEST_F(LegacyPreferences, SettingNeedsNoPlace) {
  Answer(kGetConnection, "FF 55 04 00 2A 08 03 C7");
  EXPECT_EQ(legacy_.loadipodpreference(8, nullptr), 1);
}

TEST_F(LegacyPreferences, AnyClassCanBeAskedFor) {
  Answer("FF 55 03 00 29 FE D6", "FF 55 04 00 2A FE 09 CB");
  EXPECT_EQ(legacy_.loadipodpreference(0xFE, &setting_), 1);
  EXPECT_EQ(setting_, 9);
}

TEST_F(LegacyPreferences, VideoOutputIsSetAndToBeRestoredOnExit) {
  Answer(kSetVideoOut, "FF 55 04 00 02 00 2B CF");
  EXPECT_EQ(legacy_.setipodpreferencevidooutsetting(1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kSetVideoOut));
}

TEST_F(LegacyPreferences, VideoOutputSettingGoesOutAsGiven) {
  legacy_.setipodpreferencevidooutsetting(0xAB);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 00 2B 00 AB 01 24"));
}

TEST_F(LegacyPreferences, RefusedVideoOutputFails) {
  Answer(kSetVideoOut, "FF 55 04 00 02 04 2B CB");
  EXPECT_EQ(legacy_.setipodpreferencevidooutsetting(1), 0);
}

TEST_F(LegacyPreferences, AckOfAnyCommandAcceptsTheVideoOutput) {
  Answer(kSetVideoOut, "FF 55 04 00 02 00 13 E7");
  EXPECT_EQ(legacy_.setipodpreferencevidooutsetting(1), 1);
}

TEST_F(LegacyPreferences, VideoOutputSucceedsWithoutAnAck) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.setipodpreferencevidooutsetting(1), 1); }),
            kSilenceUs);
}

TEST_F(LegacyPreferences, VideoOutputThatCannotBeSentFailsAndAwaitsNothing) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.setipodpreferencevidooutsetting(1), 0); }),
            5 * kMillisecond);
}

// A preference shown as text: its request, and the reply that sets it to 1.
struct Preference {
  const char* name;
  int (ipod::*getter)(wchar_t*);
  const char* request;
  const char* reply;
};

class ShownPreferences : public LegacyPreferences,
                         public ::testing::WithParamInterface<Preference> {
 protected:
  int Get(wchar_t* text) { return (legacy_.*GetParam().getter)(text); }
};

TEST_P(ShownPreferences, AreUnknownUnanswered) {
  EXPECT_EQ(Get(text_), 0);
  EXPECT_STREQ(text_, L"Unknown");
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().request));
}

TEST_P(ShownPreferences, AreUnknownWhenAnotherClassIsAnswered) {
  Answer(GetParam().request, "FF 55 04 00 2A 0F 01 C2");
  EXPECT_EQ(Get(text_), 0);
  EXPECT_STREQ(text_, L"Unknown");
}

TEST_P(ShownPreferences, AreUnknownWhenTheyCannotBeAskedFor) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Get(text_), 0);
  EXPECT_STREQ(text_, L"Unknown");
}

TEST_P(ShownPreferences, NeedNoPlace) {
  Answer(GetParam().request, GetParam().reply);
  EXPECT_EQ(Get(nullptr), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Legacy, ShownPreferences,
    ::testing::Values(Preference{"VideoOutSetting", &ipod::getipodpreferencevideooutsetting,
                                 "FF 55 03 00 29 00 D4", "FF 55 04 00 2A 00 01 D1"},
                      Preference{"ScreenConfiguration", &ipod::getipodpreferencescreenconfiguration,
                                 "FF 55 03 00 29 01 D3", "FF 55 04 00 2A 01 01 D0"},
                      Preference{"VideoSignalFormat", &ipod::getipodpreferencevideosignalformat,
                                 "FF 55 03 00 29 02 D2", "FF 55 04 00 2A 02 01 CF"},
                      Preference{"LineOutUsage", &ipod::getipodpreferencelineoutusage,
                                 "FF 55 03 00 29 03 D1", "FF 55 04 00 2A 03 01 CE"},
                      Preference{"VideoOutConnection", &ipod::getipodpreferencevideoutconnection,
                                 "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 01 C9"},
                      Preference{"ClosedCaptioning", &ipod::getipodpreferenceclosedcaptioning,
                                 "FF 55 03 00 29 09 CB", "FF 55 04 00 2A 09 01 C8"},
                      Preference{"VideoMonitorAspect", &ipod::getipodpreferencevideomonitoraspect,
                                 "FF 55 03 00 29 0A CA", "FF 55 04 00 2A 0A 01 C7"},
                      Preference{"Subtitles", &ipod::getipodpreferencesubtitles,
                                 "FF 55 03 00 29 0C C8", "FF 55 04 00 2A 0C 01 C5"},
                      Preference{"VideoAlternateAudio",
                                 &ipod::getipodpreferencevideoalternateaudiochannel,
                                 "FF 55 03 00 29 0D C7", "FF 55 04 00 2A 0D 01 C4"}),
    test::RowName());

// A preference's setting as the iPod tells it, and its text.
struct Setting {
  const char* name;
  int (ipod::*getter)(wchar_t*);
  const char* request;
  const char* reply;
  const wchar_t* text;
};

class ShownSettings : public LegacyPreferences, public ::testing::WithParamInterface<Setting> {};

TEST_P(ShownSettings, HaveTheirText) {
  Answer(GetParam().request, GetParam().reply);
  EXPECT_EQ((legacy_.*GetParam().getter)(text_), 1);
  EXPECT_STREQ(text_, GetParam().text);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().request));
}

INSTANTIATE_TEST_SUITE_P(
    Legacy, ShownSettings,
    ::testing::Values(
        Setting{"VideoOutSetting0", &ipod::getipodpreferencevideooutsetting, "FF 55 03 00 29 00 D4",
                "FF 55 04 00 2A 00 00 D2", L"Off"},
        Setting{"VideoOutSetting1", &ipod::getipodpreferencevideooutsetting, "FF 55 03 00 29 00 D4",
                "FF 55 04 00 2A 00 01 D1", L"On"},
        Setting{"VideoOutSetting2", &ipod::getipodpreferencevideooutsetting, "FF 55 03 00 29 00 D4",
                "FF 55 04 00 2A 00 02 D0", L"Ask User"},
        Setting{"VideoOutSetting3", &ipod::getipodpreferencevideooutsetting, "FF 55 03 00 29 00 D4",
                "FF 55 04 00 2A 00 03 CF", L"Unknown"},
        Setting{"VideoOutSetting255", &ipod::getipodpreferencevideooutsetting,
                "FF 55 03 00 29 00 D4", "FF 55 04 00 2A 00 FF D3", L"Unknown"},
        Setting{"ScreenConfiguration0", &ipod::getipodpreferencescreenconfiguration,
                "FF 55 03 00 29 01 D3", "FF 55 04 00 2A 01 00 D1", L"Fill Entire Screen"},
        Setting{"ScreenConfiguration1", &ipod::getipodpreferencescreenconfiguration,
                "FF 55 03 00 29 01 D3", "FF 55 04 00 2A 01 01 D0", L"Fit Edge To Screen"},
        Setting{"ScreenConfiguration2", &ipod::getipodpreferencescreenconfiguration,
                "FF 55 03 00 29 01 D3", "FF 55 04 00 2A 01 02 CF", L"Unknown"},
        Setting{"ScreenConfiguration255", &ipod::getipodpreferencescreenconfiguration,
                "FF 55 03 00 29 01 D3", "FF 55 04 00 2A 01 FF D2", L"Unknown"},
        Setting{"VideoSignalFormat0", &ipod::getipodpreferencevideosignalformat,
                "FF 55 03 00 29 02 D2", "FF 55 04 00 2A 02 00 D0", L"NTSC"},
        Setting{"VideoSignalFormat1", &ipod::getipodpreferencevideosignalformat,
                "FF 55 03 00 29 02 D2", "FF 55 04 00 2A 02 01 CF", L"PAL"},
        Setting{"VideoSignalFormat2", &ipod::getipodpreferencevideosignalformat,
                "FF 55 03 00 29 02 D2", "FF 55 04 00 2A 02 02 CE", L"Unknown"},
        Setting{"VideoSignalFormat255", &ipod::getipodpreferencevideosignalformat,
                "FF 55 03 00 29 02 D2", "FF 55 04 00 2A 02 FF D1", L"Unknown"},
        Setting{"LineOutUsage0", &ipod::getipodpreferencelineoutusage, "FF 55 03 00 29 03 D1",
                "FF 55 04 00 2A 03 00 CF", L"Disabled"},
        Setting{"LineOutUsage1", &ipod::getipodpreferencelineoutusage, "FF 55 03 00 29 03 D1",
                "FF 55 04 00 2A 03 01 CE", L"Enabled"},
        Setting{"LineOutUsage2", &ipod::getipodpreferencelineoutusage, "FF 55 03 00 29 03 D1",
                "FF 55 04 00 2A 03 02 CD", L"Ask User"},
        Setting{"LineOutUsage3", &ipod::getipodpreferencelineoutusage, "FF 55 03 00 29 03 D1",
                "FF 55 04 00 2A 03 03 CC", L"Unknown"},
        Setting{"LineOutUsage255", &ipod::getipodpreferencelineoutusage, "FF 55 03 00 29 03 D1",
                "FF 55 04 00 2A 03 FF D0", L"Unknown"},
        Setting{"VideoOutConnection0", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 00 CA", L"No Connection"},
        Setting{"VideoOutConnection1", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 01 C9", L"Composite"},
        Setting{"VideoOutConnection2", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 02 C8", L"S-Video"},
        Setting{"VideoOutConnection3", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 03 C7", L"Component"},
        Setting{"VideoOutConnection4", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 04 C6", L"Unknown"},
        Setting{"VideoOutConnection255", &ipod::getipodpreferencevideoutconnection,
                "FF 55 03 00 29 08 CC", "FF 55 04 00 2A 08 FF CB", L"Unknown"},
        Setting{"ClosedCaptioning0", &ipod::getipodpreferenceclosedcaptioning,
                "FF 55 03 00 29 09 CB", "FF 55 04 00 2A 09 00 C9", L"Off"},
        Setting{"ClosedCaptioning1", &ipod::getipodpreferenceclosedcaptioning,
                "FF 55 03 00 29 09 CB", "FF 55 04 00 2A 09 01 C8", L"On"},
        Setting{"ClosedCaptioning2", &ipod::getipodpreferenceclosedcaptioning,
                "FF 55 03 00 29 09 CB", "FF 55 04 00 2A 09 02 C7", L"Unknown"},
        Setting{"ClosedCaptioning255", &ipod::getipodpreferenceclosedcaptioning,
                "FF 55 03 00 29 09 CB", "FF 55 04 00 2A 09 FF CA", L"Unknown"},
        Setting{"VideoMonitorAspect0", &ipod::getipodpreferencevideomonitoraspect,
                "FF 55 03 00 29 0A CA", "FF 55 04 00 2A 0A 00 C8", L"4 by 3"},
        Setting{"VideoMonitorAspect1", &ipod::getipodpreferencevideomonitoraspect,
                "FF 55 03 00 29 0A CA", "FF 55 04 00 2A 0A 01 C7", L"16 by 9"},
        Setting{"VideoMonitorAspect2", &ipod::getipodpreferencevideomonitoraspect,
                "FF 55 03 00 29 0A CA", "FF 55 04 00 2A 0A 02 C6", L"Unknown"},
        Setting{"VideoMonitorAspect255", &ipod::getipodpreferencevideomonitoraspect,
                "FF 55 03 00 29 0A CA", "FF 55 04 00 2A 0A FF C9", L"Unknown"},
        Setting{"Subtitles0", &ipod::getipodpreferencesubtitles, "FF 55 03 00 29 0C C8",
                "FF 55 04 00 2A 0C 00 C6", L"Off"},
        Setting{"Subtitles1", &ipod::getipodpreferencesubtitles, "FF 55 03 00 29 0C C8",
                "FF 55 04 00 2A 0C 01 C5", L"On"},
        Setting{"Subtitles2", &ipod::getipodpreferencesubtitles, "FF 55 03 00 29 0C C8",
                "FF 55 04 00 2A 0C 02 C4", L"Unknown"},
        Setting{"Subtitles255", &ipod::getipodpreferencesubtitles, "FF 55 03 00 29 0C C8",
                "FF 55 04 00 2A 0C FF C7", L"Unknown"},
        Setting{"VideoAlternateAudio0", &ipod::getipodpreferencevideoalternateaudiochannel,
                "FF 55 03 00 29 0D C7", "FF 55 04 00 2A 0D 00 C5", L"Off"},
        Setting{"VideoAlternateAudio1", &ipod::getipodpreferencevideoalternateaudiochannel,
                "FF 55 03 00 29 0D C7", "FF 55 04 00 2A 0D 01 C4", L"On"},
        Setting{"VideoAlternateAudio2", &ipod::getipodpreferencevideoalternateaudiochannel,
                "FF 55 03 00 29 0D C7", "FF 55 04 00 2A 0D 02 C3", L"Unknown"},
        Setting{"VideoAlternateAudio255", &ipod::getipodpreferencevideoalternateaudiochannel,
                "FF 55 03 00 29 0D C7", "FF 55 04 00 2A 0D FF C6", L"Unknown"}),
    test::RowName());

}  // namespace
