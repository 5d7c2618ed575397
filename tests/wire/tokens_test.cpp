// SPDX-License-Identifier: MIT
// The identification tokens in words.
#include <gtest/gtest.h>

#include "wire_test_support.h"

namespace {

using wire_test::Ascii;
using wire_test::FromAccessory;
using wire_test::FromAccessoryWithId;
using wire_test::FromIpod;
using wire_test::operator+;
using wire_test::Bytes;

TEST(Tokens, TellTheLingoesOfAnAccessory) {
  EXPECT_EQ(FromAccessoryWithId({0x00, 0x39, 0x00, 0x01, 0x01, 0x0D, 0x00, 0x00, 0x02, 0x00, 0x03,
                                 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x02, 0x00}),
            "General SetFIDTokenValues id 0x0001: token count 1, tokens [{token type 0x00, token "
            "identification, lingoes [General, Display Remote], options 0x00000004, device ID "
            "0x00000200}]");
}

TEST(Tokens, TellWhatAnAccessoryIs) {
  const Bytes tokens = Bytes{0x0A, 0x00, 0x01, 0, 0, 0, 0, 0, 0, 0, 0x05} +
                       Bytes{0x07, 0x00, 0x02, 0x01} + Ascii("Gym") + Bytes{0x00} +
                       Bytes{0x06, 0x00, 0x02, 0x04, 0x02, 0x05, 0x00} +
                       Bytes{0x05, 0x00, 0x02, 0x09, 0x00, 0xFF} +
                       Bytes{0x07, 0x00, 0x02, 0x0C, 0x00, 0x00, 0x00, 0x01} +
                       Bytes{0x05, 0x00, 0x03, 0x03, 0x01, 0x01};
  EXPECT_EQ(FromAccessory(Bytes{0x00, 0x39, 0x06} + tokens),
            "General SetFIDTokenValues: token count 6, tokens ["
            "{token type 0x00, token accessory capabilities, capabilities 0x0000000000000005}, "
            "{token type 0x00, token accessory information, type name, name \"Gym\"}, "
            "{token type 0x00, token accessory information, type firmware version, version 2.5.0}, "
            "{token type 0x00, token accessory information, type maximum payload, maximum payload "
            "255 bytes}, "
            "{token type 0x00, token accessory information, type RF certifications, RF "
            "certifications 0x00000001}, "
            "{token type 0x00, token iPod preference, class line out usage, setting on, restore on "
            "exit yes}]");
}

TEST(Tokens, TellWhatProgramsAnAccessorySpeaksTo) {
  const Bytes tokens = Bytes{0x07, 0x00, 0x04, 0x01} + Ascii("com") + Bytes{0x00} +
                       Bytes{0x0D, 0x00, 0x05} + Ascii("A1B2C3D4E5") + Bytes{0x00} +
                       Bytes{0x04, 0x00, 0x08, 0x01, 0x02};
  EXPECT_EQ(FromAccessory(Bytes{0x00, 0x39, 0x03} + tokens),
            "General SetFIDTokenValues: token count 3, tokens ["
            "{token type 0x00, token protocol, protocol index 1, protocol \"com\"}, "
            "{token type 0x00, token bundle seed, bundle seed \"A1B2C3D4E5\"}, "
            "{token type 0x00, token protocol metadata, protocol index 1, metadata 0x02}]");
}

TEST(Tokens, TellSampleRatesAndTheVideoDelay) {
  EXPECT_EQ(FromAccessory({0x00, 0x39, 0x02, 0x0A, 0x00, 0x0E, 0x00, 0x00, 0xAC, 0x44, 0x00,
                           0x00, 0xBB, 0x80, 0x06, 0x00, 0x0F, 0x01, 0x02, 0x03, 0x04}),
            "General SetFIDTokenValues: token count 2, tokens ["
            "{token type 0x00, token audio sample rates, sample rates [44100 Hz, 48000 Hz]}, "
            "{token type 0x00, token video delay, delay 16909060 ms}]");
}

TEST(Tokens, AreAcceptedOrNotOneByOne) {
  EXPECT_EQ(FromIpod({0x00, 0x3A, 0x03, 0x03, 0x00, 0x00, 0x00, 0x04, 0x00, 0x02, 0x01, 0x07, 0x04,
                      0x00, 0x03, 0x02, 0x0F}),
            "General RetFIDTokenValueACKs: token count 3, tokens ["
            "{token type 0x00, token identification, status accepted}, "
            "{token type 0x00, token accessory information, status malformed, type model number}, "
            "{token type 0x00, token iPod preference, status not supported, class pause on "
            "removal}]");
}

TEST(Tokens, ThatAreDamagedDoNotHideThoseBehindThem) {
  EXPECT_EQ(FromAccessory({0x00, 0x39, 0x02, 0x03, 0x00, 0x08, 0x01, 0x04, 0x00, 0x08, 0x01, 0x02}),
            "General SetFIDTokenValues: token count 2, tokens ["
            "{token type 0x00, token protocol metadata, protocol index 1}, "
            "{token type 0x00, token protocol metadata, protocol index 1, metadata 0x02}] "
            "! cut short at metadata");
  EXPECT_EQ(FromAccessory({0x00, 0x39, 0x01, 0x05, 0x00, 0x08, 0x01, 0x02, 0x09}),
            "General SetFIDTokenValues: token count 1, tokens [{token type 0x00, token protocol "
            "metadata, protocol index 1, metadata 0x02, surplus 09}] ! 1 byte too many in tokens");
  EXPECT_EQ(
      FromAccessory({0x00, 0x39, 0x01, 0x04, 0x00, 0x77, 0x01, 0x02}),
      "General SetFIDTokenValues: token count 1, tokens [{token type 0x00, token 119, data 01 "
      "02}] ! unknown token 119");
}

TEST(Tokens, ThatAreLongerThanTheirFrameAreTold) {
  EXPECT_EQ(FromAccessory({0x00, 0x39, 0x01, 0x40, 0x00, 0x08}),
            "General SetFIDTokenValues: token count 1, tokens [00 08] ! cut short at tokens");
}

}  // namespace
