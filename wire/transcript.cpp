// SPDX-License-Identifier: MIT
#include "wire/transcript.h"

#include <algorithm>

namespace ipodwire {
namespace {

constexpr const char* kNoFrame = "no frame";

bool IsMarked(const Packet& packet, const char* comment) {
  return std::find(packet.comments.begin(), packet.comments.end(), comment) !=
         packet.comments.end();
}

std::string Comments(const Packet& packet, const std::string& otherwise) {
  std::string text;
  for (const std::string& comment : packet.comments) {
    if (!text.empty()) text += ", ";
    text += comment;
  }
  return text.empty() ? otherwise : text;
}

}  // namespace

void Transcript::Add(const Packet& packet) {
  Line& line = lines_[packet.line];
  switch (packet.event) {
    case Packet::Event::kSent:
      TellAll(&line,
              line.sent.Add(packet.number, packet.time, packet.bytes, IsMarked(packet, kNoFrame)));
      break;
    case Packet::Event::kReceived:
      TellAll(&line, line.received.Add(packet.number, packet.time, packet.bytes,
                                       IsMarked(packet, kNoFrame)));
      break;
    case Packet::Event::kStatus:
      // The state of the control lines by itself stands out no more than the bytes do.
      if (!packet.comments.empty()) TellEvent(packet, Note::Kind::kLine, Comments(packet, ""));
      break;
    case Packet::Event::kLost:
      TellEvent(packet, Note::Kind::kLost, Comments(packet, "something is missing here"));
      break;
    case Packet::Event::kFraming:
      TellEvent(packet, Note::Kind::kLine, Comments(packet, "framing error"));
      break;
    case Packet::Event::kParity:
      TellEvent(packet, Note::Kind::kLine, Comments(packet, "parity error"));
      break;
    case Packet::Event::kBreak:
      TellEvent(packet, Note::Kind::kLine, Comments(packet, "break"));
      break;
    case Packet::Event::kOverflow:
      TellEvent(packet, Note::Kind::kLine, Comments(packet, "overflow: bytes were lost"));
      break;
    case Packet::Event::kComplete:
    case Packet::Event::kUnknown:
      break;
  }
}

std::vector<Note> Transcript::End() {
  std::vector<Note> notes;
  for (auto& entry : lines_) {
    Line& line = entry.second;
    TellAll(&line, line.sent.End());
    TellAll(&line, line.received.End());
    const std::vector<Note> unanswered = line.conversation.End();
    notes.insert(notes.end(), unanswered.begin(), unanswered.end());
  }
  return notes;
}

void Transcript::TellAll(Line* line, const std::vector<Observed>& runs) {
  for (const Observed& run : runs) tell_(line->conversation.Next(run));
}

void Transcript::TellEvent(const Packet& packet, Note::Kind kind, const std::string& text) {
  Told told;
  told.observed.number = packet.number;
  told.observed.time = packet.time;
  told.is_event = true;
  told.notes.push_back({kind, text});
  tell_(told);
}

}  // namespace ipodwire
