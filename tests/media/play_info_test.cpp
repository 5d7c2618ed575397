// SPDX-License-Identifier: MIT
// The now-playing summary: the requests that it is made of, in order, and what each failure leaves.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;

class PlayInfo : public SessionTest {
 protected:
  void AnswerIndex() { Answer("FF 55 03 04 00 1E DB", "FF 55 07 04 00 1F 00 00 01 02 D3"); }
  void AnswerTexts() {
    Answer("FF 55 07 04 00 20 00 00 01 02 D2", "FF 55 06 04 00 21 41 62 00 32");
    Answer("FF 55 07 04 00 22 00 00 01 02 D0", "FF 55 06 04 00 23 C3 A9 00 67");
    Answer("FF 55 07 04 00 24 00 00 01 02 CE", "FF 55 05 04 00 25 43 00 8F");
  }
  void AnswerCapabilities(const char* reply) {
    Answer("FF 55 09 03 12 00 00 00 01 02 00 00 DF", reply);
  }

  unsigned long index_ = 7;
  int flag_ = 7;
  wchar_t title_[32] = L"old title";
  wchar_t artist_[32] = L"old artist";
  wchar_t album_[32] = L"old album";

  int GetAll() {
    return session_.GetPlayInfo(&index_, &flag_, title_, 32, artist_, 32, album_, 32);
  }
};

TEST_F(PlayInfo, ReadsIndexTextsAndCapabilitiesInThisOrder) {
  AnswerIndex();
  AnswerTexts();
  AnswerCapabilities("FF 55 0D 03 13 00 00 00 00 80 00 00 00 00 00 00 5D");
  EXPECT_EQ(GetAll(), 1);
  EXPECT_EQ(index_, 0x102U);
  EXPECT_EQ(flag_, 1);
  EXPECT_STREQ(title_, L"Ab");
  EXPECT_STREQ(artist_, L"\u00E9");
  EXPECT_STREQ(album_, L"C");
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 03 04 00 1E DB", "FF 55 07 04 00 20 00 00 01 02 D2",
                          "FF 55 07 04 00 22 00 00 01 02 D0", "FF 55 07 04 00 24 00 00 01 02 CE",
                          "FF 55 09 03 12 00 00 00 01 02 00 00 DF"));
}

TEST_F(PlayInfo, FlagIsTheTopBitOfTheFifthByteAlone) {
  AnswerIndex();
  AnswerTexts();
  AnswerCapabilities("FF 55 0D 03 13 00 FF FF FF 7F FF FF FF FF FF FF 67");
  EXPECT_EQ(GetAll(), 1);
  EXPECT_EQ(flag_, 0);
}

TEST_F(PlayInfo, FailedIndexFailsAndTouchesNothing) {
  EXPECT_EQ(GetAll(), 0);
  EXPECT_EQ(index_, 7U);
  EXPECT_EQ(flag_, 7);
  EXPECT_STREQ(title_, L"old title");
  EXPECT_STREQ(artist_, L"old artist");
  EXPECT_STREQ(album_, L"old album");
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 03 04 00 1E DB", "FF 55 03 04 00 1E DB", "FF 55 03 04 00 1E DB"));
}

TEST_F(PlayInfo, FailedTextsStayAndTheRestIsStillRead) {
  AnswerIndex();
  Answer("FF 55 07 04 00 24 00 00 01 02 CE", "FF 55 05 04 00 25 43 00 8F");
  EXPECT_EQ(GetAll(), 1);
  EXPECT_STREQ(title_, L"old title");
  EXPECT_STREQ(artist_, L"old artist");
  EXPECT_STREQ(album_, L"C");
  EXPECT_EQ(flag_, 0);  // cleared before the request, which failed
}

TEST_F(PlayInfo, WithEveryPointerNullOnlyTheIndexIsAsked) {
  EXPECT_EQ(session_.GetPlayInfo(nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr, 0), 0);
  DrainSent();
  AnswerIndex();
  EXPECT_EQ(session_.GetPlayInfo(nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr, 0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 04 00 1E DB"));
}

TEST_F(PlayInfo, LongTitleIsCutAndTerminatedInsideItsCapacity) {
  AnswerIndex();
  Answer("FF 55 07 04 00 20 00 00 01 02 D2", "FF 55 0A 04 00 21 41 42 43 44 45 46 47 F5");
  wchar_t title[4] = {L'x', L'x', L'x', L'x'};
  EXPECT_EQ(session_.GetPlayInfo(nullptr, nullptr, title, 3, nullptr, 0, nullptr, 0), 1);
  EXPECT_THAT(title, ElementsAre(L'A', L'B', L'\0', L'x'));
}

TEST_F(PlayInfo, TitleOfThreeHundredCharactersIsCutTo256) {
  AnswerIndex();
  std::string reply = "FF 55 00 01 2F 04 00 21";
  for (int i = 0; i < 300; ++i) reply += " 41";
  Answer("FF 55 07 04 00 20 00 00 01 02 D2", reply + " 7F");
  wchar_t title[301] = {};
  EXPECT_EQ(session_.GetPlayInfo(nullptr, nullptr, title, 300, nullptr, 0, nullptr, 0), 1);
  EXPECT_EQ(std::wstring(title), std::wstring(256, L'A'));
}

// The reply holds 256 of the 300 bytes, so the 86th character is there only in part.
TEST_F(PlayInfo, TitleOfAHundredThreeByteCharactersIsCutBetweenTwoOfThem) {
  AnswerIndex();
  std::string reply = "FF 55 00 01 2F 04 00 21";
  for (int i = 0; i < 100; ++i) reply += " E2 82 AC";
  Answer("FF 55 07 04 00 20 00 00 01 02 D2", reply + " 6B");
  wchar_t title[200] = {};
  EXPECT_EQ(session_.GetPlayInfo(nullptr, nullptr, title, 200, nullptr, 0, nullptr, 0), 1);
  EXPECT_EQ(std::wstring(title), std::wstring(85, L'\u20AC'));
}

}  // namespace
