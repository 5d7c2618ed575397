// SPDX-License-Identifier: MIT
// Serves the playback commands of the Extended Interface.

#include "playback.h"

#include "track_facts.h"

namespace ipodsim {
namespace {

// By the first byte of GetIndexedPlayingTrackInfo.
const std::vector<TrackFact> kTrackFacts = {
    TrackFact::kCapabilities, TrackFact::kPodcast, TrackFact::kReleaseDate, TrackFact::kDescription,
    TrackFact::kLyrics,       TrackFact::kGenre,   TrackFact::kComposer,    TrackFact::kArtwork};

// Of the speeds of audiobooks; 0 is normal and 1 fast.
constexpr std::uint8_t kSlow = 0xFF;

AtDetach WhatAtDetach(const Request& request) {
  return request.data.size() > 1 && request.data[1] == 1 ? AtDetach::kRestore : AtDetach::kKeep;
}

}  // namespace

const Track* TrackOrRefusal(Link* link, const Player& player, const Request& request,
                            std::uint32_t index) {
  const Track* track = player.at(index);
  if (track != nullptr) return track;
  // kNothing is what we called the current track ourselves while none is loaded.
  if (index != Player::kNothing) {
    link->Report(MistakeKind::kIndexOutOfRange, CommandName(request.lingo, request.command) +
                                                    " with index " + std::to_string(index) +
                                                    " of " + std::to_string(player.size()));
  }
  link->Acknowledge(request, AckStatus::kBadParameter);
  return nullptr;
}

const Track* TrackWithChapterOrRefusal(Link* link, const Player& player, const Request& request) {
  const Track* track = TrackOrRefusal(link, player, request, Get32(request.data, 1));
  const std::uint16_t chapter = Get16(request.data, 5);
  if (track == nullptr || chapter == 0 || chapter < track->chapters.size()) return track;
  link->Refuse(request, MistakeKind::kIndexOutOfRange,
               CommandName(request.lingo, request.command) + " with chapter " +
                   std::to_string(chapter) + " of " + std::to_string(track->chapters.size()));
  return nullptr;
}

Playback::Playback(Link* link, Player* player, Notifications* notifications,
                   const Settings& settings)
    : link_(link),
      player_(player),
      notifications_(notifications),
      settings_(settings),
      traits_(TraitsOf(settings.profile)) {}

bool Playback::Handle(const Request& request) {
  if (request.lingo != kExtended) return false;
  return HandleStatus(request) || HandleTexts(request) || HandleModes(request);
}

bool Playback::Control(PlayControl control) {
  if (player_->Control(control, link_->now())) return true;
  const bool starts = control == PlayControl::kPlay || control == PlayControl::kPlayPause;
  if (!starts) return false;
  std::vector<std::size_t> music;
  for (std::size_t i = 0; i < settings_.library.tracks.size(); ++i) {
    if (settings_.library.tracks[i].kind == MediaKind::kMusic) music.push_back(i);
  }
  if (music.empty()) return false;
  player_->Start(std::move(music), 0, link_->now());
  return true;
}

bool Playback::HandleStatus(const Request& request) {
  Bytes data;
  switch (request.command) {
    case extended::kGetPlayStatus:
      ReturnStatus(request);
      return true;
    case extended::kGetCurrentPlayingTrackIndex:
      Put32(data, player_->index());
      link_->Reply(request, extended::kReturnCurrentPlayingTrackIndex, data);
      return true;
    case extended::kGetNumPlayingTracks:
      Put32(data, player_->size());
      link_->Reply(request, extended::kReturnNumPlayingTracks, data);
      return true;
    case extended::kSetPlayStatusChangeNotification:
      SetNotifications(request);
      return true;
    case extended::kPlayControl:
      ControlPlayer(request);
      return true;
    case extended::kSetCurrentPlayingTrack:
      JumpTo(request);
      return true;
    default:
      return false;
  }
}

void Playback::ReturnStatus(const Request& request) {
  Bytes data;
  Put32(data, static_cast<std::uint32_t>(player_->length_ms()));
  Put32(data, static_cast<std::uint32_t>(player_->position_ms(link_->now())));
  Put8(data, static_cast<std::uint8_t>(player_->state()));
  link_->Reply(request, extended::kReturnPlayStatus, data);
}

void Playback::ControlPlayer(const Request& request) {
  const std::uint8_t code = request.data[0];
  if (code < 1 || code > 11) {
    link_->Refuse(request, MistakeKind::kBadParameter, "play control " + std::to_string(code));
    return;
  }
  const auto control = static_cast<PlayControl>(code);
  const bool ignored =
      !KnowsPlayAndPause() && (control == PlayControl::kPlay || control == PlayControl::kPause);
  const bool done = ignored || Control(control);
  link_->Acknowledge(request, done ? AckStatus::kOk : AckStatus::kFailed);
}

// Before version 1.13 only the toggle between the two. Codes that came later are acknowledged, and
// nothing happens.
bool Playback::KnowsPlayAndPause() const {
  const Version version = traits_.Lingo(kExtended)->version;
  return version.major > 1 || (version.major == 1 && version.minor >= 13);
}

void Playback::JumpTo(const Request& request) {
  const std::uint32_t index = Get32(request.data, 0);
  if (TrackOrRefusal(link_, *player_, request, index) == nullptr) return;
  player_->Jump(index, link_->now());
  link_->Acknowledge(request, AckStatus::kOk);
}

bool Playback::HandleTexts(const Request& request) {
  switch (request.command) {
    case extended::kGetIndexedPlayingTrackTitle:
      ReturnTrackText(request, &Track::title);
      return true;
    case extended::kGetIndexedPlayingTrackArtistName:
      ReturnTrackText(request, &Track::artist);
      return true;
    case extended::kGetIndexedPlayingTrackAlbumName:
      ReturnTrackText(request, &Track::album);
      return true;
    case extended::kGetIndexedPlayingTrackInfo:
      AnswerTrackFact(link_, *player_, request, kTrackFacts,
                      extended::kReturnIndexedPlayingTrackInfo);
      return true;
    default:
      return false;
  }
}

void Playback::ReturnTrackText(const Request& request, const std::string Track::*field) {
  const Track* track = TrackOrRefusal(link_, *player_, request, Get32(request.data, 0));
  if (track == nullptr) return;
  Bytes data;
  PutText(data, track->*field);
  link_->Reply(request, static_cast<std::uint16_t>(request.command + 1), data);
}

bool Playback::HandleModes(const Request& request) {
  switch (request.command) {
    case extended::kGetShuffle:
      link_->Reply(request, extended::kReturnShuffle,
                   {static_cast<std::uint8_t>(player_->shuffle())});
      return true;
    case extended::kSetShuffle:
      SetShuffle(request);
      return true;
    case extended::kGetRepeat:
      link_->Reply(request, extended::kReturnRepeat,
                   {static_cast<std::uint8_t>(player_->repeat())});
      return true;
    case extended::kSetRepeat:
      SetRepeat(request);
      return true;
    case extended::kGetAudiobookSpeed:
      link_->Reply(request, extended::kReturnAudiobookSpeed, {audiobook_speed_});
      return true;
    case extended::kSetAudiobookSpeed:
      SetAudiobookSpeed(request);
      return true;
    default:
      return false;
  }
}

// A mode and, where it is there, a byte that says whether to restore the old one at detach.
bool Playback::CheckMode(const Request& request, const char* what, bool known) {
  const Bytes& data = request.data;
  if (known && (data.size() < 2 || data[1] <= 1)) return true;
  const std::string restored = data.size() < 2 ? "" : ", restored " + std::to_string(data[1]);
  link_->Refuse(request, MistakeKind::kBadParameter,
                std::string(what) + " " + std::to_string(data[0]) + restored);
  return false;
}

void Playback::SetShuffle(const Request& request) {
  if (!CheckMode(request, "shuffle", request.data[0] <= 2)) return;
  shuffle_.NoticeChange(player_->shuffle(), WhatAtDetach(request));
  player_->SetShuffle(static_cast<Shuffle>(request.data[0]), link_->now());
  link_->Acknowledge(request, AckStatus::kOk);
}

void Playback::SetRepeat(const Request& request) {
  if (!CheckMode(request, "repeat", request.data[0] <= 2)) return;
  repeat_.NoticeChange(player_->repeat(), WhatAtDetach(request));
  player_->SetRepeat(static_cast<Repeat>(request.data[0]));
  link_->Acknowledge(request, AckStatus::kOk);
}

void Playback::SetAudiobookSpeed(const Request& request) {
  const std::uint8_t speed = request.data[0];
  if (!CheckMode(request, "audiobook speed", speed <= 1 || speed == kSlow)) return;
  original_speed_.NoticeChange(audiobook_speed_, WhatAtDetach(request));
  audiobook_speed_ = speed;
  link_->Acknowledge(request, AckStatus::kOk);
}

void Playback::Forget() {
  if (const auto shuffle = shuffle_.PopOriginal()) player_->SetShuffle(*shuffle, link_->now());
  if (const auto repeat = repeat_.PopOriginal()) player_->SetRepeat(*repeat);
  audiobook_speed_ = original_speed_.PopOriginal().value_or(audiobook_speed_);
}

void Playback::SetNotifications(const Request& request) {
  const std::size_t size = request.data.size();
  if (size != 1 && size != 4) {
    link_->Refuse(request, MistakeKind::kWrongPayloadSize,
                  "SetPlayStatusChangeNotification with " + std::to_string(size) + " bytes");
    return;
  }
  if (size == 4 && !traits_.knows_wide_notification) {
    link_->Acknowledge(request, AckStatus::kBadParameter);
    return;
  }
  const std::uint32_t known = size == 4 ? Notifications::kAllBits : 1;
  const std::uint32_t asked = size == 4 ? Get32(request.data, 0) : request.data[0];
  if ((asked & ~known) != 0) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "notification mask " + std::to_string(asked) + ", which no iPod knows");
    return;
  }
  notifications_->SetMask(size == 1 && asked != 0 ? Notifications::kBasicBits : asked);
  link_->Acknowledge(request, AckStatus::kOk);
}

}  // namespace ipodsim
