// SPDX-License-Identifier: MIT
// Serves the database commands of the Extended Interface.

#include "browsing.h"

#include <algorithm>

namespace ipodsim {
namespace {

constexpr std::uint8_t kTrackInfoOption = 0x02;
constexpr std::uint8_t kDurationInfo = 0x40;

}  // namespace

Browsing::Browsing(Link* link, Player* player, const Settings& settings)
    : link_(link),
      player_(player),
      settings_(settings),
      traits_(TraitsOf(settings.profile)),
      database_(&settings.library) {}

bool Browsing::Handle(const Request& request) {
  if (request.lingo != kExtended) return false;
  switch (request.command) {
    case extended::kResetDbSelection:
      database_.Reset(Hierarchy::kAudio);
      link_->Acknowledge(request, AckStatus::kOk);
      return true;
    case extended::kResetDbSelectionHierarchy:
      ResetHierarchy(request);
      return true;
    case extended::kGetNumberCategorizedDbRecords:
      Count(request);
      return true;
    case extended::kRetrieveCategorizedDatabaseRecords:
      Retrieve(request);
      return true;
    case extended::kSelectDbRecord:
    case extended::kSelectSortDbRecord:
      Select(request);
      return true;
    case extended::kRetrieveDbTrackInfo:
      ReturnTrackInfo(request);
      return true;
    case extended::kPlayCurrentSelection:
      PlaySelection(request);
      return true;
    default:
      return false;
  }
}

void Browsing::ResetHierarchy(const Request& request) {
  const std::uint8_t hierarchy = request.data[0];
  if (hierarchy != 1 && hierarchy != 2) {
    link_->Refuse(request, MistakeKind::kBadParameter, "hierarchy " + std::to_string(hierarchy));
    return;
  }
  database_.Reset(static_cast<Hierarchy>(hierarchy));
  link_->Acknowledge(request, AckStatus::kOk);
}

void Browsing::Count(const Request& request) {
  if (!CheckCategory(request)) return;
  Bytes data;
  Put32(data, database_.Count(static_cast<Category>(request.data[0])));
  link_->Reply(request, extended::kReturnNumberCategorizedDbRecords, data);
}

void Browsing::Retrieve(const Request& request) {
  if (!CheckCategory(request)) return;
  const auto category = static_cast<Category>(request.data[0]);
  const std::uint32_t start = Get32(request.data, 1);
  const std::uint32_t asked = Get32(request.data, 5);
  const std::uint32_t total = database_.Count(category);
  const bool all = asked == Database::kAllRecords;
  if (start >= total && !(all && start == 0)) {
    RefuseIndex(request, start, total);
    return;
  }
  if (!all && asked > total - start) {
    link_->Report(MistakeKind::kIndexOutOfRange, std::to_string(asked) + " records from " +
                                                     std::to_string(start) + " on, of " +
                                                     std::to_string(total));
  }
  std::vector<Bytes> answers;
  const std::uint32_t end = start + std::min(asked, total - start);
  for (std::uint32_t index = start; index < end; ++index) {
    Bytes answer;
    Put32(answer, index);
    PutText(answer, database_.Name(category, index));
    answers.push_back(std::move(answer));
  }
  link_->Stream(request, extended::kReturnCategorizedDatabaseRecord, std::move(answers));
}

void Browsing::Select(const Request& request) {
  if (request.command == extended::kSelectDbRecord && settings_.refuses_select_record) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  if (!CheckCategory(request)) return;
  const auto category = static_cast<Category>(request.data[0]);
  const std::uint32_t index = Get32(request.data, 1);
  const std::uint32_t total = database_.Count(category);
  if (index != Database::kAllRecords && index >= total) {
    RefuseIndex(request, index, total);
    return;
  }
  // The index counts in the list as it was shown; the new order holds for what is listed next.
  if (request.command == extended::kSelectSortDbRecord) {
    const std::uint8_t sort = request.data[5];
    if (sort > 9 && sort != 0xFF) {
      link_->Refuse(request, MistakeKind::kBadParameter, "sort order " + std::to_string(sort));
      return;
    }
    if (category != Category::kTrack) {
      database_.Select(category, index);
      // Dates, series, seasons and episodes are not kept: their order is the usual one.
      database_.SetSort(sort <= 5 ? static_cast<Sort>(sort) : Sort::kDefault);
      link_->Acknowledge(request, AckStatus::kOk);
      return;
    }
  }
  if (category == Category::kTrack) {
    Play(request, index);
    return;
  }
  database_.Select(category, index);
  link_->Acknowledge(request, AckStatus::kOk);
}

void Browsing::PlaySelection(const Request& request) {
  const std::uint32_t index = Get32(request.data, 0);
  const std::uint32_t total = database_.Count(Category::kTrack);
  if (index != Database::kAllRecords && index >= total) {
    RefuseIndex(request, index, total);
    return;
  }
  Play(request, index);
}

// Picking a track plays it, and the whole list around it.
void Browsing::Play(const Request& request, std::uint32_t index) {
  std::vector<std::size_t> tracks = database_.Tracks();
  if (tracks.empty()) {
    link_->Acknowledge(request, AckStatus::kFailed);
    return;
  }
  if (settings_.stays_paused) {
    if (player_->size() == 0) player_->Start(std::move(tracks), 0, link_->now());
    player_->Control(PlayControl::kPause, link_->now());
  } else {
    player_->Start(std::move(tracks), index == Database::kAllRecords ? 0 : index, link_->now());
  }
  link_->Acknowledge(request, AckStatus::kOk);
}

void Browsing::ReturnTrackInfo(const Request& request) {
  if ((traits_.Lingo(kExtended)->options & kTrackInfoOption) == 0) {
    link_->Acknowledge(request, AckStatus::kUnknown);
    return;
  }
  const std::uint32_t start = Get32(request.data, 0);
  const std::uint32_t asked = Get32(request.data, 4);
  const std::uint32_t total = database_.Count(Category::kTrack);
  if (request.data[8] != kDurationInfo) {
    link_->Refuse(request, MistakeKind::kBadParameter,
                  "track information mask " + std::to_string(request.data[8]));
    return;
  }
  if (start >= total || asked > total - start) {
    RefuseIndex(request, start, total);
    return;
  }
  const std::vector<std::size_t> tracks = database_.Tracks();
  std::vector<Bytes> answers;
  for (std::uint32_t index = start; index < start + asked; ++index) {
    Bytes answer;
    Put32(answer, index);
    Put8(answer, kDurationInfo);
    Put32(answer, static_cast<std::uint32_t>(settings_.library.tracks[tracks[index]].length_ms));
    answers.push_back(std::move(answer));
  }
  link_->Stream(request, extended::kReturnDbTrackInfo, std::move(answers));
}

bool Browsing::CheckCategory(const Request& request) {
  if (Database::IsCategory(request.data[0])) return true;
  link_->Refuse(request, MistakeKind::kBadParameter, "category " + std::to_string(request.data[0]));
  return false;
}

void Browsing::RefuseIndex(const Request& request, std::uint32_t index, std::uint32_t count) {
  link_->Refuse(request, MistakeKind::kIndexOutOfRange,
                CommandName(request.lingo, request.command) + " with index " +
                    std::to_string(index) + " of " + std::to_string(count));
}

}  // namespace ipodsim
