// SPDX-License-Identifier: MIT
// Serves the Simple Remote and Display Remote lingoes.

#include "remotes.h"

#include "track_facts.h"

namespace ipodsim {
namespace {

// Button bits. Volume, power, backlight and menu buttons are taken and do nothing here.
constexpr std::uint32_t kPlayPause = 0x00000001;
constexpr std::uint32_t kNextTrack = 0x00000008;
constexpr std::uint32_t kPreviousTrack = 0x00000010;
constexpr std::uint32_t kStop = 0x00000080;
constexpr std::uint32_t kPlay = 0x00000100;
constexpr std::uint32_t kPause = 0x00000200;
constexpr std::uint32_t kShuffleAdvance = 0x00008000;
constexpr std::uint32_t kRepeatAdvance = 0x00010000;
constexpr std::uint32_t kFastForward = 0x00100000;
constexpr std::uint32_t kRewind = 0x00200000;

// By the first byte of GetIndexedPlayingTrackInfo.
const std::vector<TrackFact> kTrackFacts = {
    TrackFact::kCapabilities, TrackFact::kChapter, TrackFact::kArtist,
    TrackFact::kAlbum,        TrackFact::kGenre,   TrackFact::kTitle,
    TrackFact::kComposer,     TrackFact::kLyrics,  TrackFact::kArtwork};

}  // namespace

bool Remotes::Handle(const Request& request) {
  if (request.lingo == kSimpleRemote) return HandleButtons(request);
  if (request.lingo != kDisplayRemote ||
      request.command != display_remote::kGetIndexedPlayingTrackInfo)
    return false;
  AnswerTrackFact(link_, *player_, request, kTrackFacts,
                  display_remote::kRetIndexedPlayingTrackInfo);
  return true;
}

// One to four bytes, least significant first: the one number on the wire in that order. The context
// buttons are not answered, the other button commands are.
bool Remotes::HandleButtons(const Request& request) {
  std::uint32_t held = 0;
  for (std::size_t i = 0; i < request.data.size(); ++i) {
    held |= std::uint32_t{request.data[i]} << (8 * i);
  }
  for (int bit = 0; bit < 32; ++bit) {
    const std::uint32_t button = 1u << bit;
    if ((held & ~held_ & button) != 0) Press(button);
    if ((held_ & ~held & button) != 0) Release(button);
  }
  held_ = held;
  if (request.command != simple_remote::kContextButtonStatus)
    link_->Acknowledge(request, AckStatus::kOk);
  return true;
}

void Remotes::Press(std::uint32_t button) {
  switch (button) {
    case kPlayPause:
      playback_->Control(PlayControl::kPlayPause);
      break;
    case kNextTrack:
      playback_->Control(PlayControl::kNextTrack);
      break;
    case kPreviousTrack:
      playback_->Control(PlayControl::kPreviousTrack);
      break;
    case kStop:
      playback_->Control(PlayControl::kStop);
      break;
    case kPlay:
      playback_->Control(PlayControl::kPlay);
      break;
    case kPause:
      playback_->Control(PlayControl::kPause);
      break;
    case kShuffleAdvance:
      player_->SetShuffle(static_cast<Shuffle>((static_cast<int>(player_->shuffle()) + 1) % 3),
                          link_->now());
      break;
    case kRepeatAdvance:
      player_->SetRepeat(static_cast<Repeat>((static_cast<int>(player_->repeat()) + 1) % 3));
      break;
    case kFastForward:
      playback_->Control(PlayControl::kStartFastForward);
      break;
    case kRewind:
      playback_->Control(PlayControl::kStartRewind);
      break;
    default:
      break;
  }
}

void Remotes::Release(std::uint32_t button) {
  if (button == kFastForward || button == kRewind) playback_->Control(PlayControl::kEndFast);
}

}  // namespace ipodsim
