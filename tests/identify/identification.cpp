// SPDX-License-Identifier: MIT
// The frames and answers that the identification tests share.
#include "identify/identification.h"

namespace test {

namespace {

// More commands than any identification sends with an identifier.
constexpr std::uint16_t kIds = 32;

std::string Text(Bytes body) {
  Bytes frame = {0xFF, 0x55, static_cast<std::uint8_t>(body.size())};
  frame.insert(frame.end(), body.begin(), body.end());
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum % 0x100));
  return ToHex(frame);
}

// "00 4B 09" is the command "00 4B" and the data " 09".
constexpr std::size_t kCommandCharacters = 5;

}  // namespace

std::string Frame(std::string_view body) { return Text(Hex(body)); }

std::string Frame(std::string_view command, std::uint16_t id, std::string_view data) {
  Bytes body = Hex(command);
  body.push_back(static_cast<std::uint8_t>(id >> 8));
  body.push_back(static_cast<std::uint8_t>(id & 0xFF));
  const Bytes rest = Hex(data);
  body.insert(body.end(), rest.begin(), rest.end());
  return Text(body);
}

std::string Repeated(std::string_view byte, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += std::string(i == 0 ? "" : " ").append(byte);
  return text;
}

std::string Tokens(std::string_view model) {
  const std::size_t model_bytes = Hex(model).size();
  return "0F"
         " 0A 00 01 00 00 00 00 00 00 00 05"                           // capabilities
         " 10 00 02 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00"         // "Orvian Touch"
         " 06 00 02 04 02 05 00"                                       // firmware 2.5
         " 06 00 02 05 02 05 00"                                       // hardware 2.5
         " 12 00 02 06 4F 72 76 69 61 6E 20 46 69 74 6E 65 73 73 00 "  // "Orvian Fitness"
         + ToHex({static_cast<std::uint8_t>(model_bytes + 4)}) + " 00 02 07 " + std::string(model) +
         " 00"
         " 0A 00 02 08 30 30 30 30 30 31 00"                       // "000001"
         " 05 00 02 09 00 FF"                                      // maximum payload 255
         " 07 00 02 0C 00 00 00 00"                                // RF certifications
         " 05 00 03 01 00 01 05 00 03 02 00 01 05 00 03 03 01 01"  // preferences
         " 05 00 03 08 01 01 05 00 03 0A 01 01 05 00 03 00 01 01";
}

Identification::Identification() {
  world_.SetFileVersion(L"qz104.exe", L"2,5,0,17");
  session_.SetIDPSEnable(1);
}

bool Identification::KeepGoing(void* context) {
  auto* test = static_cast<Identification*>(context);
  ++test->steps_;
  if (test->on_step_) test->on_step_(test->steps_);
  return test->steps_ != test->stop_at_;
}

int Identification::Identify(int flag) {
  steps_ = 0;
  world_.Record({"Sleep", "WaitForSingleObject", "WriteFile"});
  return session_.Command_IdentifyDeviceLingos(flag, &result_, KeepGoing, this);
}

void Identification::Reply(std::string_view request, std::string_view reply,
                           std::int64_t delay_us) {
  Answer(Frame(request), Frame(reply), delay_us);
}

void Identification::ReplyWithId(std::string_view request, std::string_view reply) {
  for (std::uint16_t id = 0; id < kIds; ++id) {
    Answer(Frame(request.substr(0, kCommandCharacters), id, request.substr(kCommandCharacters)),
           Frame(reply.substr(0, kCommandCharacters), id, reply.substr(kCommandCharacters)));
  }
}

void Identification::IgnoreWithId(std::string_view request) {
  for (std::uint16_t id = 0; id < kIds; ++id) {
    Answer(Frame(request.substr(0, kCommandCharacters), id, request.substr(kCommandCharacters)),
           "");
  }
}

void Identification::AnswerOptions() {
  ReplyWithId("00 11", "00 12 01 F8");
  ReplyWithId("00 4B 00", "00 4C 00 00 00 00 00 00 00 00 00");
  ReplyWithId("00 4B 09", "00 4C 09 00 00 00 00 00 00 00 02");
  ReplyWithId("00 4B 04", "00 4C 04 00 00 00 00 00 00 00 02");
}

void Identification::AcceptTokens(std::string_view model) {
  for (const char* announcement : {kAnnounceWithSports, kAnnounceWithoutSports,
                                   kAnnounceGeneralThrice, kAnnounceGeneralThriceWithoutSports}) {
    ReplyWithId(std::string("00 39 ") + announcement, "00 3A 01 03 00 00 00");
  }
  ReplyWithId("00 39 " + Tokens(model), "00 3A 01 03 00 01 00");
}

void Identification::EndWith(std::string_view status) {
  ReplyWithId("00 3B 00", "00 3C " + std::string(status));
}

void Identification::AnswerEventsWithId() {
  ReplyWithId("00 4F", "00 51 00 00 00 00 00 00 02 04");
  ReplyWithId("00 49 00 00 00 00 00 00 02 04", "00 02 00 49");
}

void Identification::DockTokenIpod() {
  Reply(kStart, kStartTaken);
  AnswerOptions();
  AcceptTokens();
  EndWith("00");
  AnswerEventsWithId();
}

void Identification::AnswerVersion(std::string_view lingo, std::string_view version) {
  const std::string number(lingo);
  Reply("00 0F " + number, "00 10 " + number + " " + std::string(version));
}

void Identification::AnswerVersions() {
  AnswerVersion("00", "01 09");
  AnswerVersion("03", "01 05");
  AnswerVersion("04", "01 0E");
  AnswerVersion("09", "01 01");
  AnswerVersion("0C", "01 02");
}

void Identification::AcceptPreferences() {
  for (const char* preference :
       {"03 01", "01 00", "02 00", "08 01", "09 00", "0A 01", "0F 01", "00 01"}) {
    Reply("00 2B " + std::string(preference) + " 01", "00 02 00 2B");
  }
}

void Identification::AnswerEvents() {
  Reply("00 4F", "00 51 00 00 00 00 00 00 02 04");
  Reply("00 49 00 00 00 00 00 00 02 04", "00 02 00 49");
}

void Identification::AcceptLingoes() {
  for (const char* announcement :
       {kIdentifyGeneralOnly, kIdentifyLingoes, kIdentifyLingoesWithSports}) {
    Reply(announcement, kIdentified);
  }
  AnswerVersions();
  AcceptPreferences();
  AnswerEvents();
}

void Identification::DockLingoIpod() {
  Reply(kStart, kStartRefused);
  AcceptLingoes();
}

std::vector<std::string> Identification::DrainHostCalls() {
  std::vector<std::string> texts = world_.DrainCalls().Of("host").text();
  for (std::string& text : texts) {
    const std::size_t first = text.find('(') + 1;
    const std::size_t second = text.find(", ");
    if (second != std::string::npos) text.erase(first, second + 2 - first);
  }
  return texts;
}

std::vector<std::string> Identification::DrainSentOf(std::string_view command) {
  constexpr std::size_t kHeaderCharacters = 9;  // "FF 55 LL "
  std::vector<std::string> found;
  for (const std::string& frame : DrainSent()) {
    if (frame.size() > kHeaderCharacters &&
        frame.compare(kHeaderCharacters, command.size(), command) == 0) {
      found.push_back(frame);
    }
  }
  return found;
}

}  // namespace test
