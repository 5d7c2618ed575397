// SPDX-License-Identifier: MIT
// The self-test on an iPod that passes it: an album of three tracks, of which two are played.
#pragma once

#include <string>

#include "support/answering_ipod.h"
#include "support/legacy_test.h"

namespace test {

// Frames of the iPod that tests change.
constexpr const char* kSelectAck = "FF 55 06 04 00 01 00 00 17 DE";
constexpr const char* kControlAck = "FF 55 06 04 00 01 00 00 29 CC";
constexpr const char* kControlRefused = "FF 55 06 04 00 01 04 00 29 C8";
constexpr const char* kStopped = "FF 55 0C 04 00 1D 00 00 10 00 00 00 00 00 00 C3";
constexpr const char* kPlaying = "FF 55 0C 04 00 1D 00 00 10 00 00 00 00 00 01 C2";
constexpr const char* kPaused = "FF 55 0C 04 00 1D 00 00 10 00 00 00 00 00 02 C1";

class SelfTestTest : public LegacyTest {
 protected:
  SelfTestTest() {
    AnswerConnection();
    AnswerInformation();
    AnswerBrowsing();
    AnswerPlayback();
    world_.line().Plug(answering_);
  }
  ~SelfTestTest() override { world_.line().Unplug(); }

  /// What one call brings.
  struct Step {
    int more = 77;
    int result = 77;
    std::string title;
    std::string detail;
  };
  Step Next() {
    Step step;
    step.more = legacy_.nextregressiontest(title_, &step.result, detail_);
    step.title = Narrow(title_);
    step.detail = Narrow(detail_);
    return step;
  }
  /// The given step, without those before it.
  Step Perform(unsigned number) {
    ipodPeer::SelfTestStep(legacy_) = number;
    return Next();
  }
  /// From now on each frame is listed behind the detail text of the moment when it began.
  void CaptionFrames() {
    answering_.SetCaption([this] { return Narrow(detail_); });
  }
  /// Characters beyond ASCII show as '?'.
  static std::string Narrow(const wchar_t* text) {
    std::string narrow;
    for (; *text != L'\0'; ++text) narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
    return narrow;
  }

  AnsweringIpod answering_;
  wchar_t title_[256] = {};
  wchar_t detail_[256] = {};

 private:
  void AnswerConnection() {
    answering_.Answer("00 05", "FF 55 04 00 02 00 05 F5");
    answering_.Answer("04 00 3B", "FF 55 06 04 00 01 00 00 3B BA");
  }
  void AnswerInformation() {
    answering_.Answer("00 0D", "FF 55 0C 00 0E 00 0B 00 04 4D 41 31 34 37 00 AD");  // MA147
    answering_.Answer("00 07", "FF 55 07 00 08 5A 6F C3 AB 00 BA");                 // Zoë
    answering_.Answer("00 0B", "FF 55 06 00 0C 38 4B 35 00 36");                    // 8K5
    answering_.Answer("00 09", "FF 55 05 00 0A 02 00 01 EE");                       // 2.0.1
  }
  void AnswerBrowsing() {
    answering_.Answer("04 00 16", "FF 55 06 04 00 01 00 00 16 DF");
    answering_.Answer("04 00 18 03", "FF 55 07 04 00 19 00 00 00 04 D8");
    answering_.Answer("04 00 18 05", "FF 55 07 04 00 19 00 00 00 03 D9");
    answering_.Answer("04 00 1A 03",  // Light
                      "FF 55 0D 04 00 1B 00 00 00 00 4C 69 67 68 74 00 DC");
    answering_.Answer("04 00 1A 05 00 00 00 00",  // Engine
                      "FF 55 0E 04 00 1B 00 00 00 00 45 6E 67 69 6E 65 00 7D");
    answering_.Answer("04 00 1A 05 00 00 00 01",  // Paper
                      "FF 55 0D 04 00 1B 00 00 00 01 50 61 70 65 72 00 DB");
    answering_.Answer("04 00 17", kSelectAck);
  }
  void AnswerPlayback() {
    answering_.Answer("04 00 29", kControlAck);
    answering_.AnswerNth("04 00 1E", 1, "FF 55 07 04 00 1F 00 00 00 00 D6");
    answering_.AnswerNth("04 00 1E", 2, "FF 55 07 04 00 1F 00 00 00 01 D5");
    answering_.Answer("04 00 20 00 00 00 00", "FF 55 0A 04 00 21 45 6E 67 69 6E 65 00 7B");
    answering_.Answer("04 00 20 00 00 00 01", "FF 55 09 04 00 21 50 61 70 65 72 00 DA");
    answering_.AnswerNth("04 00 1C", 1, kStopped);
    answering_.AnswerNth("04 00 1C", 2, kPlaying);
    answering_.AnswerNth("04 00 1C", 3, kPaused);
    answering_.AnswerNth("04 00 1C", 4, kStopped);
  }
};

}  // namespace test
