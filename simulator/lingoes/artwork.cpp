// SPDX-License-Identifier: MIT
// Serves the artwork commands, with pictures made up from the track's place in the list.

#include "artwork.h"

#include <algorithm>
#include <iterator>

#include "playback.h"

namespace ipodsim {
namespace {

struct ArtworkFormat {
  std::uint16_t id;
  std::uint8_t pixels;
  std::uint16_t width;
  std::uint16_t height;
};

constexpr std::uint8_t kRgb565LittleEndian = 0x02;
constexpr std::size_t kBytesPerPixel = 2;
constexpr ArtworkFormat kFormats[] = {
    {0x0401, kRgb565LittleEndian, 16, 16},
    {0x0402, kRgb565LittleEndian, 40, 40},
};
// Data bytes of one answer, so that each fits a short frame.
constexpr std::size_t kMostAnswerBytes = 240;

const ArtworkFormat* FindFormat(std::uint16_t id) {
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [&](const ArtworkFormat& format) { return format.id == id; });
  return found == std::end(kFormats) ? nullptr : found;
}

// A slope of colours that differs from track to track.
Bytes Picture(const ArtworkFormat& format, std::uint32_t track) {
  Bytes bytes;
  for (std::uint32_t y = 0; y < format.height; ++y) {
    for (std::uint32_t x = 0; x < format.width; ++x) {
      const std::uint32_t red = 31 * x / format.width;
      const std::uint32_t green = 63 * y / format.height;
      const std::uint32_t blue = track & 31;
      const std::uint32_t pixel = (red << 11) | (green << 5) | blue;
      Put8(bytes, pixel);
      Put8(bytes, pixel >> 8);
    }
  }
  return bytes;
}

// What the first answer says before its bytes: the format, and the part of it that the picture
// fills, which is all.
Bytes FirstHeader(const ArtworkFormat& format) {
  Bytes bytes;
  Put16(bytes, 0);
  Put8(bytes, format.pixels);
  Put16(bytes, format.width);
  Put16(bytes, format.height);
  Put32(bytes, 0);  // the upper left corner
  Put16(bytes, format.width);
  Put16(bytes, format.height);
  Put32(bytes, static_cast<std::uint32_t>(format.width * kBytesPerPixel));
  return bytes;
}

}  // namespace

void PutArtworkCounts(Bytes& bytes, const Track& track) {
  if (!track.artwork) return;
  for (const ArtworkFormat& format : kFormats) {
    Put16(bytes, format.id);
    Put16(bytes, 1);
  }
}

bool Artwork::Handle(const Request& request) {
  if (request.lingo != kExtended) return false;
  switch (request.command) {
    case extended::kGetArtworkFormats:
      ReturnFormats(request);
      return true;
    case extended::kGetTrackArtworkData:
      ReturnData(request);
      return true;
    case extended::kMisnumberedGetTrackArtworkTimes:
      // The number that the Display Remote lingo has for this request. Here it belongs to an answer
      // of the iPod's own, but it only ever arrives from older consoles that mean the times; an
      // iPod that reads it strictly does not know it.
      if (settings_.refuses_misnumbered_artwork_times) {
        link_->Acknowledge(request, AckStatus::kUnknown);
        return true;
      }
      ReturnTimes(request);
      return true;
    case extended::kGetTrackArtworkTimes:
      ReturnTimes(request);
      return true;
    default:
      return false;
  }
}

void Artwork::ReturnFormats(const Request& request) {
  Bytes data;
  for (const ArtworkFormat& format : kFormats) {
    Put16(data, format.id);
    Put8(data, format.pixels);
    Put16(data, format.width);
    Put16(data, format.height);
  }
  link_->Reply(request, extended::kRetArtworkFormats, data);
}

// Whether the track has a picture in the format that both requests name in bytes 4 and 5.
bool Artwork::CheckPicture(const Request& request, const Track& track) {
  const std::uint16_t format = Get16(request.data, 4);
  if (FindFormat(format) == nullptr) {
    link_->Report(MistakeKind::kBadParameter, CommandName(request.lingo, request.command) +
                                                  " with format " + std::to_string(format));
  } else if (track.artwork) {
    return true;
  }
  link_->Acknowledge(request, AckStatus::kBadParameter);
  return false;
}

void Artwork::ReturnTimes(const Request& request) {
  const Track* track = TrackOrRefusal(link_, *player_, request, Get32(request.data, 0));
  if (track == nullptr || !CheckPicture(request, *track)) return;
  const std::uint16_t first = Get16(request.data, 6);
  const std::uint16_t count = Get16(request.data, 8);
  Bytes data;
  // The one picture appears with the track, at time 0.
  if (first == 0 && count > 0) Put32(data, 0);
  link_->Reply(request, extended::kRetTrackArtworkTimes, data);
}

void Artwork::ReturnData(const Request& request) {
  const std::uint32_t place = Get32(request.data, 0);
  const Track* track = TrackOrRefusal(link_, *player_, request, place);
  if (track == nullptr || !CheckPicture(request, *track)) return;
  // Whatever the time asked for, the one picture is the one shown then.
  const ArtworkFormat& format = *FindFormat(Get16(request.data, 4));
  const Bytes picture = Picture(format, place);
  std::vector<Bytes> answers;
  for (auto at = picture.begin(); at != picture.end();) {
    Bytes answer;
    if (answers.empty()) {
      answer = FirstHeader(format);
    } else {
      Put16(answer, static_cast<std::uint32_t>(answers.size()));
    }
    const auto left = static_cast<std::size_t>(picture.end() - at);
    const std::size_t taken = std::min(left, kMostAnswerBytes - answer.size());
    answer.insert(answer.end(), at, at + static_cast<std::ptrdiff_t>(taken));
    at += static_cast<std::ptrdiff_t>(taken);
    answers.push_back(std::move(answer));
  }
  link_->Stream(request, extended::kRetTrackArtworkData, std::move(answers));
}

}  // namespace ipodsim
