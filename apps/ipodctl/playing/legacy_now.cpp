// SPDX-License-Identifier: MIT
// Reads the player through the legacy interface, and shows its display texts.
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/display_text.h"
#include "playing/now.h"

namespace ipodctl {

namespace {

constexpr const char* kStateTexts[] = {
    "Stopped", "Playing", "Paused", "Fast Forward", "Fast Rewind", "Ending Fast Forward or Rewind"};

std::string StateText(unsigned char state) {
  return state < std::size(kStateTexts) ? kStateTexts[state] : "Unknown";
}

// Few tracks have chapters.
std::optional<std::string> ReadChapter(LegacySession& session) {
  const LegacyAnswer chapter =
      session.Ask({[](ipod& docked) { return docked.command_getcurrentplayingtrackchaptername(); },
                   ipod::IPOD_COMMAND_GETCURRENTPLAYINGTRACKCHAPTERNAME,
                   ipod::IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKCHAPTERNAME, 1, true});
  if (!chapter.answered()) return std::nullopt;
  return TextIn(chapter);
}

// None when the iPod refuses to tell.
std::optional<bool> ReadVideo(LegacySession& session, unsigned long track) {
  constexpr std::uint8_t kDisplayAck = 0x00;
  constexpr std::size_t kCapabilitiesByte = 4;
  const LegacyAnswer answer =
      session.AskShort({[track](ipod& docked) {
                          return docked.command_remote_getindexedplayingtrackinfo(
                              ipod::IPOD_REMOTE_INFOTYPE_CAPSINFO, track, 0);
                        },
                        ipod::IPOD_COMMAND_REMOTE_GETINDEXEDPLAYINGTRACKINFO,
                        ipod::IPOD_COMMAND_REMOTE_RETURNINDEXEDPLAYINGTRACKINFO,
                        kCapabilitiesByte + 1,
                        false,
                        {ipod::IPOD_REMOTE_INFOTYPE_CAPSINFO},
                        kDisplayAck});
  if (answer.refused()) return std::nullopt;
  session.Require(answer, "tell whether it is playing a video");
  return (answer.data[kCapabilitiesByte] & ipod::IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_VIDEO) != 0;
}

}  // namespace

void ShowLegacyPlaying(Output& output, LegacySession& session) {
  NowPlaying now = LookAtPlayer(session);
  output.Fact("State", StateText(now.state));
  if (!now.index) {
    output.Object(ToJson(now));
    return;
  }
  ReadTitle(session, &now);
  // These two texts are not times; they show the request that was sent last.
  const std::string length = Utf8(session.interface().getipodtracklength());
  const std::string position = Utf8(session.interface().getipodtrackposition());
  now.chapter = ReadChapter(session);
  now.video = ReadVideo(session, *now.index);
  output.Fact("Title", now.title ? ShownName(*now.title) : "(cannot be read)");
  output.Fact("Chapter", Printable(now.chapter.value_or("Unknown")));
  output.Fact("Video", !now.video ? "(not told)" : *now.video ? "yes" : "no");
  output.Fact("Track length", length);
  output.Fact("Track position", position);
  output.Fact("Time", Progress(now));
  output.Object(ToJson(now));
}

void RunLegacyNow(const Context& context, LegacySession& session) {
  ShowLegacyPlaying(context.output, session);
}

}  // namespace ipodctl
