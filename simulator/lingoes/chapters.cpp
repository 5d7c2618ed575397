// SPDX-License-Identifier: MIT
// Serves the chapter commands. The chapters of a track are equally long.

#include "chapters.h"

#include <algorithm>

namespace ipodsim {

bool Chapters::Handle(const Request& request) {
  if (request.lingo != kExtended) return false;
  switch (request.command) {
    case extended::kGetCurrentPlayingTrackChapterInfo:
      ReturnPlace(request);
      return true;
    case extended::kGetCurrentPlayingTrackChapterName:
      ReturnName(request);
      return true;
    default:
      return false;
  }
}

std::size_t Chapters::Count() const {
  const Track* track = player_->current();
  return track == nullptr ? 0 : track->chapters.size();
}

// There is at least one chapter.
std::size_t Chapters::Current() const {
  const std::int64_t chapters = static_cast<std::int64_t>(Count());
  const std::int64_t chapter = player_->position_ms(link_->now()) * chapters / player_->length_ms();
  return static_cast<std::size_t>(std::min(chapter, chapters - 1));
}

void Chapters::ReturnPlace(const Request& request) {
  const std::size_t count = Count();
  Bytes data;
  // Without chapters: index -1 of 0.
  Put32(data, count == 0 ? Player::kNothing : static_cast<std::uint32_t>(Current()));
  Put32(data, static_cast<std::uint32_t>(count));
  link_->Reply(request, extended::kReturnCurrentPlayingTrackChapterInfo, data);
}

// Older consoles ask without saying which chapter; they mean the current one.
void Chapters::ReturnName(const Request& request) {
  const std::size_t size = request.data.size();
  if (size != 0 && size != 4) {
    link_->Refuse(request, MistakeKind::kWrongPayloadSize,
                  "GetCurrentPlayingTrackChapterName with " + std::to_string(size) + " bytes");
    return;
  }
  const std::size_t count = Count();
  if (count == 0 && size == 0) {
    link_->Acknowledge(request, AckStatus::kBadParameter);
    return;
  }
  const std::size_t index = size == 0 ? Current() : Get32(request.data, 0);
  if (index >= count) {
    link_->Refuse(request, MistakeKind::kIndexOutOfRange,
                  "chapter " + std::to_string(index) + " of " + std::to_string(count));
    return;
  }
  Bytes data;
  PutText(data, player_->current()->chapters[index]);
  link_->Reply(request, extended::kReturnCurrentPlayingTrackChapterName, data);
}

}  // namespace ipodsim
