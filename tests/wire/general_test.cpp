// SPDX-License-Identifier: MIT
// The commands of the General lingo in words.
#include <gtest/gtest.h>

#include "wire_test_support.h"

namespace {

using wire_test::Ascii;
using wire_test::FromAccessory;
using wire_test::FromAccessoryWithId;
using wire_test::FromIpod;
using wire_test::FromIpodWithId;
using wire_test::operator+;
using wire_test::Bytes;

TEST(TheGeneralLingo, TellsWhatIsAcknowledgedAndHow) {
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x00, 0x38}), "General ACK: status ok, command StartIDPS");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x01, 0x49}),
            "General ACK: status command failed, command SetEventNotification");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x02, 0x2B}),
            "General ACK: status out of resources, command SetiPodPreferences");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x03, 0x13}),
            "General ACK: status bad parameter, command IdentifyDeviceLingoes");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x04, 0x11}),
            "General ACK: status unknown ID, command RequestMaxPayloadSize");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x07, 0x29}),
            "General ACK: status accessory not authenticated, command GetiPodPreferences");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x06, 0x05, 0x00, 0x00, 0x27, 0x10}),
            "General ACK: status pending, command EnterRemoteUIMode, longest wait 10000 ms");
  EXPECT_EQ(FromIpodWithId({0x00, 0x02, 0x12, 0x34, 0x00, 0x37}),
            "General ACK id 0x1234: status ok, command SetUIMode");
  EXPECT_EQ(FromIpod({0x00, 0x02, 0x04, 0xEE}), "General ACK: status unknown ID, command 0xEE");
}

TEST(TheGeneralLingo, ReadsAnAckOfTwoBytesWithoutIdentifierAlsoWhereIdentifiersAreOn) {
  EXPECT_EQ(FromIpodWithId({0x00, 0x02, 0x00, 0x38}), "General ACK: status ok, command StartIDPS");
}

TEST(TheGeneralLingo, IdentifiesTheOldestWay) {
  EXPECT_EQ(FromAccessory({0x00, 0x01, 0x04}), "General Identify: lingo Extended Interface");
  EXPECT_EQ(FromIpod({0x00, 0x00}), "General RequestIdentify");
}

TEST(TheGeneralLingo, IdentifiesByLingoes) {
  EXPECT_EQ(
      FromAccessory(
          {0x00, 0x13, 0x00, 0x00, 0x12, 0x19, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x02, 0x00}),
      "General IdentifyDeviceLingoes: lingoes General + Display Remote + Extended Interface + "
      "Sports + Storage, options sometimes high power, device ID 0x00000200");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x13, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00,
                                 0x00, 0x00, 0x00}),
            "General IdentifyDeviceLingoes: lingoes General, options low power, device ID "
            "0x00000000");
}

TEST(TheGeneralLingo, SwitchesTheUserInterface) {
  EXPECT_EQ(FromAccessory({0x00, 0x03}), "General RequestRemoteUIMode");
  EXPECT_EQ(FromIpod({0x00, 0x04, 0x01}), "General ReturnRemoteUIMode: mode extended");
  EXPECT_EQ(FromAccessory({0x00, 0x05}), "General EnterRemoteUIMode");
  EXPECT_EQ(FromAccessory({0x00, 0x06}), "General ExitRemoteUIMode");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x37, 0x00, 0x09, 0x01}),
            "General SetUIMode id 0x0009: mode extended");
}

TEST(TheGeneralLingo, AsksForTheNameAndTheKindOfTheIpod) {
  EXPECT_EQ(FromAccessory({0x00, 0x07}), "General RequestiPodName");
  EXPECT_EQ(FromIpod(Bytes{0x00, 0x08} + Ascii("Anna's iPod") + Bytes{0x00}),
            "General ReturniPodName: name \"Anna's iPod\"");
  EXPECT_EQ(FromAccessory({0x00, 0x09}), "General RequestiPodSoftwareVersion");
  EXPECT_EQ(FromIpod({0x00, 0x0A, 0x01, 0x02, 0x0D}),
            "General ReturniPodSoftwareVersion: version 1.2.13");
  EXPECT_EQ(FromAccessory({0x00, 0x0B}), "General RequestiPodSerialNum");
  EXPECT_EQ(FromIpod(Bytes{0x00, 0x0C} + Ascii("8K1234") + Bytes{0x00}),
            "General ReturniPodSerialNum: serial number \"8K1234\"");
  EXPECT_EQ(FromAccessory({0x00, 0x0D}), "General RequestiPodModelNum");
  EXPECT_EQ(FromIpodWithId(Bytes{0x00, 0x0E, 0x00, 0x03, 0x00, 0x0B, 0x00, 0x04} + Ascii("MA002") +
                           Bytes{0x00}),
            "General ReturniPodModelNum id 0x0003: model ID 0x000B0004, model number \"MA002\"");
}

TEST(TheGeneralLingo, AsksForVersionsAndSizes) {
  EXPECT_EQ(FromAccessory({0x00, 0x0F, 0x09}), "General RequestLingoProtocolVersion: lingo Sports");
  EXPECT_EQ(FromIpod({0x00, 0x10, 0x04, 0x01, 0x0C}),
            "General ReturnLingoProtocolVersion: lingo Extended Interface, version 1.12");
  EXPECT_EQ(FromIpod({0x00, 0x10, 0x0B, 0x01, 0x02}),
            "General ReturnLingoProtocolVersion: lingo 11, version 1.02");
  EXPECT_EQ(FromAccessory({0x00, 0x11}), "General RequestMaxPayloadSize");
  EXPECT_EQ(FromIpod({0x00, 0x12, 0x01, 0xFA}),
            "General ReturnMaxPayloadSize: maximum payload 506 bytes");
  EXPECT_EQ(FromAccessory({0x00, 0x4B, 0x04}),
            "General GetiPodOptionsForLingo: lingo Extended Interface");
  EXPECT_EQ(FromIpod({0x00, 0x4C, 0x04, 0, 0, 0, 0, 0, 0, 0, 0x02}),
            "General RetiPodOptionsForLingo: lingo Extended Interface, options track information "
            "from the database");
  EXPECT_EQ(FromIpod({0x00, 0x4C, 0x09, 0, 0, 0, 0, 0, 0, 0, 0x03}),
            "General RetiPodOptionsForLingo: lingo Sports, options workouts + 0x0000000000000001");
  EXPECT_EQ(FromIpod({0x00, 0x4C, 0x00, 0, 0, 0, 0, 0, 0x01, 0x02, 0x03}),
            "General RetiPodOptionsForLingo: lingo General, options 0x0000000000010203");
}

TEST(TheGeneralLingo, AsksTheAccessoryAboutItself) {
  EXPECT_EQ(FromIpodWithId({0x00, 0x27, 0x00, 0x01, 0x07}),
            "General GetAccessoryInfo id 0x0001: type model number");
  EXPECT_EQ(FromIpod({0x00, 0x27, 0x03, 0x04}),
            "General GetAccessoryInfo: type least lingo version, lingo Extended Interface");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x00, 0x00, 0x00, 0x00, 0xF3}),
            "General RetAccessoryInfo: type capabilities, capabilities capabilities + name + "
            "firmware version + hardware version + manufacturer + model number");
  EXPECT_EQ(FromAccessory(Bytes{0x00, 0x28, 0x01} + Ascii("Orvian Touch") + Bytes{0x00}),
            "General RetAccessoryInfo: type name, name \"Orvian Touch\"");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x02}),
            "General RetAccessoryInfo: type least iPod firmware");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x04, 0x02, 0x05, 0x00}),
            "General RetAccessoryInfo: type firmware version, version 2.5.0");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x05, 0x01, 0x00, 0x00}),
            "General RetAccessoryInfo: type hardware version, version 1.0.0");
  EXPECT_EQ(FromAccessory(Bytes{0x00, 0x28, 0x06} + Ascii("Orvian Fitness") + Bytes{0x00}),
            "General RetAccessoryInfo: type manufacturer, manufacturer \"Orvian Fitness\"");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x07, 0x00}),
            "General RetAccessoryInfo: type model number, model number \"\"");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x08}), "General RetAccessoryInfo: type serial number");
  EXPECT_EQ(FromAccessory({0x00, 0x28, 0x09, 0x00, 0xE0}),
            "General RetAccessoryInfo: type maximum payload, maximum payload 224 bytes");
}

TEST(TheGeneralLingo, NeverReadsAnIdentifierFromAccessoryInformation) {
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x28, 0x09, 0x00, 0xE0}),
            "General RetAccessoryInfo: type maximum payload, maximum payload 224 bytes");
}

TEST(TheGeneralLingo, ReadsAndSetsPreferences) {
  EXPECT_EQ(FromAccessory({0x00, 0x29, 0x0F}),
            "General GetiPodPreferences: class pause on removal");
  EXPECT_EQ(FromIpod({0x00, 0x2A, 0x02, 0x01}),
            "General RetiPodPreferences: class video signal format, setting PAL");
  EXPECT_EQ(FromAccessory({0x00, 0x2B, 0x08, 0x02, 0x01}),
            "General SetiPodPreferences: class video out connection, setting S-video, restore on "
            "exit yes");
  EXPECT_EQ(FromAccessory({0x00, 0x2B, 0x0A, 0x01, 0x00}),
            "General SetiPodPreferences: class video monitor aspect, setting 16:9, restore on exit "
            "no");
  EXPECT_EQ(FromAccessory({0x00, 0x2B, 0x00, 0x02, 0x01}),
            "General SetiPodPreferences: class video out, setting ask user, restore on exit yes");
  EXPECT_EQ(FromAccessory({0x00, 0x2B, 0x21, 0x07, 0x01}),
            "General SetiPodPreferences: class 33, setting 7, restore on exit yes");
}

TEST(TheGeneralLingo, BeginsAndEndsTheIdentificationByTokens) {
  EXPECT_EQ(FromAccessory({0x00, 0x38}), "General StartIDPS");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x38, 0x00, 0x00}), "General StartIDPS id 0x0000");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x3B, 0x00, 0x0A, 0x00}),
            "General EndIDPS id 0x000A: how all tokens sent");
  EXPECT_EQ(FromIpodWithId({0x00, 0x3C, 0x00, 0x0A, 0x00}),
            "General IDPSStatus id 0x000A: status identified");
  EXPECT_EQ(FromIpod({0x00, 0x3C, 0x01}), "General IDPSStatus: status tokens missing");
  EXPECT_EQ(FromIpod({0x00, 0x3C, 0x05}), "General IDPSStatus: status not to be tried again");
}

TEST(TheGeneralLingo, AsksForEvents) {
  EXPECT_EQ(FromAccessory({0x00, 0x4F}), "General GetSupportedEventNotification");
  EXPECT_EQ(FromIpod({0x00, 0x51, 0, 0, 0, 0, 0, 0, 0x02, 0x0C}),
            "General RetSupportedEventNotification: events 0x000000000000020C");
  EXPECT_EQ(FromAccessory({0x00, 0x49, 0, 0, 0, 0, 0, 0, 0x02, 0x04}),
            "General SetEventNotification: events 0x0000000000000204");
  EXPECT_EQ(FromIpod({0x00, 0x4A, 0x02, 0x00}), "General iPodNotification: event 0x02, more 00");
  EXPECT_EQ(FromIpod({0x00, 0x23, 0x05}), "General NotifyiPodStateChange: state 0x05");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x50, 0x00, 0x11}), "General CancelCommand id 0x0011");
}

TEST(TheGeneralLingo, ShowsAnUnknownCommandWithItsBytes) {
  EXPECT_EQ(FromIpod({0x00, 0x7E, 0x01, 0xAB}),
            "General command 0x7E: data 01 AB ! unknown command");
  EXPECT_EQ(FromIpodWithId({0x00, 0x7E, 0x00, 0x05, 0xAB}),
            "General command 0x7E id 0x0005: data AB ! unknown command");
}

TEST(TheGeneralLingo, TellsWhereACommandIsCutShortOrTooLong) {
  EXPECT_EQ(FromIpod({0x00, 0x12, 0x01}),
            "General ReturnMaxPayloadSize: cut 01 ! cut short at maximum payload");
  EXPECT_EQ(FromIpod({0x00, 0x10, 0x04}),
            "General ReturnLingoProtocolVersion: lingo Extended Interface ! cut short at version");
  EXPECT_EQ(FromIpod({0x00, 0x3C, 0x00, 0x07}),
            "General IDPSStatus: status identified, surplus 07 ! 1 byte more than the command has");
  EXPECT_EQ(FromIpod(Bytes{0x00, 0x08} + Ascii("Anna")),
            "General ReturniPodName: name \"Anna\" ! no zero byte ends name");
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x3B, 0x00}),
            "General EndIDPS: how all tokens sent ! no transaction identifier");
}

}  // namespace
