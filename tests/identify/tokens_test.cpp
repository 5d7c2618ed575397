// SPDX-License-Identifier: MIT
// Every identification token: its bytes, what it demands of the buffer, and that it writes nothing
// when it is refused. Each row builds one token into a buffer of CC bytes; a CC in the expected
// bytes is a byte that the builder leaves alone.
#include <functional>
#include <string>
#include <vector>

#include "identify/identification.h"

namespace {

using test::Repeated;
using test::SessionTest;

using Peer = CIpodCommPeer;

constexpr unsigned long kNoRoom = 0xFFFFFFFF;
constexpr std::size_t kBufferSize = 600;

struct Token {
  std::string name;
  std::string bytes;
  unsigned long demanded;  // the smallest capacity that is enough
  std::function<unsigned long(CIpodComm&, unsigned char*, unsigned long)> build;
};

void PrintTo(const Token& token, std::ostream* stream) { *stream << token.name; }

tagIdentifyToken Announcement(const std::vector<unsigned char>& lingoes) {
  return {lingoes, {0x01, 0x02, 0x03, 0x04}, {0x05, 0x06, 0x07, 0x08}};
}

Token Identify(const char* name, const std::vector<unsigned char>& lingoes,
               const std::string& bytes, unsigned long demanded) {
  return {name, bytes, demanded,
          [lingoes](CIpodComm& session, unsigned char* at, unsigned long room) {
            tagIdentifyToken announcement = Announcement(lingoes);
            return (session.*Peer::kAddIdentifyToken)(at, room, announcement);
          }};
}

Token MaxPayload(const char* name, int size, const char* bytes) {
  return {name, bytes, 7, [size](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddAccMaxPayloadToken)(at, room, size);
          }};
}

Token Name(const char* name, unsigned char type, const std::string& text, const std::string& bytes,
           unsigned long demanded) {
  return {name, bytes, demanded,
          [type, text](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddAccNameToken)(at, room, type, text);
          }};
}

Token Protocol(const char* name, unsigned char index, const std::string& text,
               const std::string& bytes, unsigned long demanded) {
  return {name, bytes, demanded,
          [index, text](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddEAPToken)(at, room, index, text);
          }};
}

Token BundleSeed(const char* name, const std::string& seed, const char* bytes) {
  return {name, bytes, 16, [seed](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddBundleSeedToken)(at, room, seed);
          }};
}

Token AudioSamples(const char* name, const std::vector<unsigned long>& rates,
                   const std::string& bytes, unsigned long demanded) {
  return {name, bytes, demanded,
          [rates](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddAudioSampleToken)(at, room, rates);
          }};
}

Token VideoDelay(const char* name, unsigned char ignored) {
  return {name, "06 00 0F 01 02 03 04", 8,
          [ignored](CIpodComm& session, unsigned char* at, unsigned long room) {
            return (session.*Peer::kAddAVDelayToken)(at, room, ignored, 0x01020304);
          }};
}

std::vector<Token> IdentifyTokens() {
  return {
      Identify("NoLingo", {}, "0B 00 00 00 01 02 03 04 05 06 07 08", 13),
      Identify("TwoLingoes", {0, 3}, "0D 00 00 02 00 03 01 02 03 04 05 06 07 08", 15),
      Identify("LingoesInTheirOrder", {12, 4, 0}, "0E 00 00 03 0C 04 00 01 02 03 04 05 06 07 08",
               16),
      // Length and count are taken modulo 256.
      Identify("Lingoes244", std::vector<unsigned char>(244, 7),
               "FF 00 00 F4 " + Repeated("07", 244) + " 01 02 03 04 05 06 07 08", 257),
      Identify("Lingoes245", std::vector<unsigned char>(245, 7),
               "00 00 00 F5 " + Repeated("07", 245) + " 01 02 03 04 05 06 07 08", 258),
      Identify("Lingoes256", std::vector<unsigned char>(256, 7),
               "0B 00 00 00 " + Repeated("07", 256) + " 01 02 03 04 05 06 07 08", 269),
  };
}

std::vector<Token> FixedTokens() {
  return {
      {"Capabilities", "0A 00 01 11 22 33 44 55 66 77 88", 12,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         unsigned char caps[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
         return (session.*Peer::kAddAccCapsToken)(at, room, caps);
       }},
      {"Version", "06 00 02 04 01 02 03", 8,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         unsigned char version[] = {1, 2, 3};
         return (session.*Peer::kAddAccVersionToken)(at, room, 4, version);
       }},
      MaxPayload("MaxPayload255", 255, "05 00 02 09 00 FF"),
      MaxPayload("MaxPayloadHighByteFirst", 0x1234, "05 00 02 09 12 34"),
      MaxPayload("MaxPayloadKeepsSixteenBits", 0x56789, "05 00 02 09 67 89"),
      {"Status", "07 00 02 0B 0A 0B 0C 0D", 9,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         unsigned char status[] = {0x0A, 0x0B, 0x0C, 0x0D};
         return (session.*Peer::kAddAccStatusToken)(at, room, status);
       }},
      // Four bytes are announced and three written.
      {"Certification", "07 00 02 0C 0A 0B 0C CC", 9,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         unsigned char certification[] = {0x0A, 0x0B, 0x0C, 0x0D};
         return (session.*Peer::kAddAccRFCertToken)(at, room, certification);
       }},
      {"Preference", "05 00 03 0A 02 01", 7,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         return (session.*Peer::kAddPreferenceToken)(at, room, 0x0A, 0x02);
       }},
      {"ProtocolMetadata", "04 00 08 03 07", 6,
       [](CIpodComm& session, unsigned char* at, unsigned long room) {
         return (session.*Peer::kAddEAPMetaToken)(at, room, 3, 7);
       }},
      VideoDelay("VideoDelay", 0x00),
      VideoDelay("VideoDelayIgnoresItsByte", 0x0E),
  };
}

std::vector<Token> TextTokens() {
  return {
      Name("Name", 1, "Orvian Touch", "10 00 02 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00", 18),
      Name("EmptyName", 7, "", "04 00 02 07 00", 6),
      Name("NameOf251", 7, std::string(251, 'A'), "FF 00 02 07 " + Repeated("41", 251) + " 00",
           257),
      Name("NameOf252", 7, std::string(252, 'A'), "00 00 02 07 " + Repeated("41", 252) + " 00",
           258),
      Protocol("Protocol", 2, "com.a", "09 00 04 02 63 6F 6D 2E 61 00", 11),
      Protocol("EmptyProtocol", 0, "", "04 00 04 00 00", 6),
      Protocol("ProtocolOf300", 1, std::string(300, 'z'),
               "30 00 04 01 " + Repeated("7A", 300) + " 00", 306),
      BundleSeed("EmptySeed", "", "0D 00 05 00 00 00 00 00 00 00 00 00 00 00"),
      BundleSeed("SeedOfNine", "123456789", "0D 00 05 31 32 33 34 35 36 37 38 39 00 00"),
      BundleSeed("SeedOfTen", "1234567890", "0D 00 05 31 32 33 34 35 36 37 38 39 30 00"),
      BundleSeed("SeedOfTwelveIsCut", "1234567890AB", "0D 00 05 31 32 33 34 35 36 37 38 39 30 00"),
  };
}

std::vector<Token> AudioTokens() {
  return {
      AudioSamples("NoSampleRate", {}, "02 00 0E", 4),
      AudioSamples("SampleRatesInTheirOrder", {44100, 0x01020304},
                   "0A 00 0E 00 00 AC 44 01 02 03 04", 12),
      AudioSamples("SampleRates63", std::vector<unsigned long>(63, 1),
                   "FE 00 0E " + Repeated("00 00 00 01", 63), 256),
      AudioSamples("SampleRates64", std::vector<unsigned long>(64, 1),
                   "02 00 0E " + Repeated("00 00 00 01", 64), 260),
  };
}

class Tokens : public SessionTest, public ::testing::WithParamInterface<Token> {
 protected:
  unsigned long Build(unsigned long capacity) {
    return GetParam().build(session_, buffer_.data(), capacity);
  }
  // The buffer that a token leaves behind.
  static test::Bytes BufferWith(const std::string& bytes) {
    test::Bytes buffer = test::Hex(bytes);
    buffer.resize(kBufferSize, 0xCC);
    return buffer;
  }

  test::Bytes buffer_ = test::Bytes(kBufferSize, 0xCC);
};

TEST_P(Tokens, WritesItsBytesAndNoMoreIntoTheSmallestRoom) {
  EXPECT_EQ(Build(GetParam().demanded), test::Hex(GetParam().bytes).size());
  EXPECT_EQ(test::ToHex(buffer_), test::ToHex(BufferWith(GetParam().bytes)));
}

TEST_P(Tokens, WritesTheSameIntoALargeRoom) {
  EXPECT_EQ(Build(kBufferSize), test::Hex(GetParam().bytes).size());
  EXPECT_EQ(test::ToHex(buffer_), test::ToHex(BufferWith(GetParam().bytes)));
}

TEST_P(Tokens, LeavesEverySmallerRoomUntouched) {
  for (unsigned long capacity = 0; capacity < GetParam().demanded; ++capacity) {
    ASSERT_EQ(Build(capacity), kNoRoom) << capacity;
    ASSERT_EQ(test::ToHex(buffer_), test::ToHex(BufferWith(""))) << capacity;
  }
}

INSTANTIATE_TEST_SUITE_P(Identify, Tokens, ::testing::ValuesIn(IdentifyTokens()), test::RowName());
INSTANTIATE_TEST_SUITE_P(Fixed, Tokens, ::testing::ValuesIn(FixedTokens()), test::RowName());
INSTANTIATE_TEST_SUITE_P(Text, Tokens, ::testing::ValuesIn(TextTokens()), test::RowName());
INSTANTIATE_TEST_SUITE_P(Audio, Tokens, ::testing::ValuesIn(AudioTokens()), test::RowName());

}  // namespace
