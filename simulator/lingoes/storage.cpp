// SPDX-License-Identifier: MIT
// Serves the Storage lingo.

#include "storage.h"

#include "simulator/files/workout_document.h"

namespace ipodsim {
namespace {

constexpr std::uint8_t kGymFeature = 2;
constexpr std::size_t kMostOpenFiles = 8;

// The iPod appends what says which iPod it is and seals the document, then what ends it.
std::string ProblemOfEnding(std::uint32_t options, const std::string& ending) {
  if ((options & kAppendIpodInfo) == 0) return "the iPod was not asked to append <iPodInfo>";
  if ((options & kAppendSignature) == 0) return "the iPod was not asked to append <signature>";
  if (ending != "</gymData>") return "the file was not opened with </gymData> as its ending";
  return {};
}

Bytes ToBytes(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

Storage::Storage(Link* link, const Settings& settings)
    : link_(link),
      settings_(settings),
      files_(settings.storage.files),
      free_space_(settings.storage.free_space) {
  if (files_ == nullptr) files_ = std::make_shared<MemoryFeatureFiles>();
}

bool Storage::Handle(const Request& request) {
  if (request.lingo != kStorage || TraitsOf(settings_.profile).Lingo(kStorage) == nullptr) {
    return false;
  }
  switch (request.command) {
    case storage::kGetIpodCaps:
      ReturnCapabilities(request);
      return true;
    case storage::kWriteIpodFileData:
      Write(request);
      return true;
    case storage::kCloseIpodFile:
      Close(request);
      return true;
    case storage::kGetIpodFreeSpace:
      ReturnFreeSpace(request);
      return true;
    case storage::kOpenIpodFeatureFile:
      Open(request);
      return true;
    default:
      return false;
  }
}

void Storage::NoticeRequest(const Request& request) {
  if (request.lingo == kSports && request.command == sports::kGetIpodCaps) asked_sports_ = true;
  if (request.lingo != kStorage) return;
  if (request.command == storage::kGetIpodCaps) asked_storage_ = true;
  if (request.command == storage::kGetIpodFreeSpace) asked_space_ = true;
}

void Storage::NoticeRefusal(const Request& request) {
  if (request.lingo != kStorage) return;
  for (auto& entry : open_) entry.second.spoilt = true;
}

void Storage::EndSession() {
  for (const auto& entry : open_) {
    // An accessory that does not hear that its file is open cannot close it, and one whose writes
    // are refused may give up.
    if (entry.second.spoilt || link_->AnswersAreFaulty()) continue;
    link_->Report(MistakeKind::kFileLeftOpen, entry.second.name + " was never closed");
  }
  Forget();
}

void Storage::Forget() {
  open_.clear();
  last_done_.reset();
  asked_sports_ = false;
  asked_storage_ = false;
  asked_space_ = false;
}

std::vector<std::string> Storage::open_files() const {
  std::vector<std::string> names;
  for (const auto& entry : open_) names.push_back(entry.second.name);
  return names;
}

void Storage::ReturnCapabilities(const Request& request) {
  const StorageSettings& storage = settings_.storage;
  const Version version = TraitsOf(settings_.profile).Lingo(kStorage)->version;
  Bytes data;
  Put64(data, storage.total_space);
  Put32(data, storage.max_file_size);
  Put16(data, storage.max_write_size);
  data.insert(data.end(), 6, 0);  // reserved
  Put8(data, version.major);
  Put8(data, version.minor);
  link_->Reply(request, storage::kRetIpodCaps, data);
}

void Storage::ReturnFreeSpace(const Request& request) {
  Bytes data;
  Put64(data, free_space_);
  link_->Reply(request, storage::kRetIpodFreeSpace, data);
}

// Feature type, four bytes of options, and data for the end of the file. Every time a new file,
// also while another is open.
void Storage::Open(const Request& request) {
  last_done_.reset();
  if (!CheckOpen(request)) return;
  CheckPreparation();
  OpenFile file;
  file.knew_space = asked_space_;
  file.options = Get32(request.data, 1);
  file.closing_data.assign(request.data.begin() + 5, request.data.end());
  if (open_.size() < kMostOpenFiles) file.name = files_->Create("gym", ".xml");
  if (file.name.empty()) {
    link_->Acknowledge(request, AckStatus::kOutOfResources);
    return;
  }
  do {
    ++last_handle_;
  } while (last_handle_ == 0 || open_.count(last_handle_) != 0);
  open_[last_handle_] = std::move(file);
  link_->Reply(request, storage::kRetIpodFileHandle, {last_handle_});
}

bool Storage::CheckOpen(const Request& request) {
  const std::uint8_t feature = request.data[0];
  const std::uint32_t options = Get32(request.data, 1);
  const std::size_t size = request.data.size() - 5;
  std::string problem;
  if (feature != kGymFeature) {
    problem = "feature type " + std::to_string(feature);
  } else if ((options & ~(kAppendData | kAppendIpodInfo | kAppendSignature)) != 0) {
    problem = "feature file options " + std::to_string(options);
  } else if ((options & kAppendData) == 0 && size != 0) {
    problem = "closing data without the option to append it";
  } else if (size > settings_.storage.max_write_size) {
    link_->Refuse(request, MistakeKind::kWriteTooLarge,
                  "closing data of " + std::to_string(size) + " bytes");
    return false;
  }
  if (!problem.empty()) link_->Refuse(request, MistakeKind::kBadParameter, problem);
  return problem.empty();
}

void Storage::CheckPreparation() {
  std::string missing;
  if (!asked_storage_) missing = "the Storage capabilities";
  if (!asked_sports_) missing = "the Sports capabilities";
  if (missing.empty() || !settings_.storage.checks_workouts) return;
  link_->Report(MistakeKind::kUnpreparedWorkout,
                "OpeniPodFeatureFile without a request for " + missing);
}

// Whether the file is a workout document of either form. Consoles that write the older form open
// their file without asking for the free space first.
void Storage::CheckDocument(const OpenFile& file) {
  if (!settings_.storage.checks_workouts || file.spoilt || link_->AnswersAreFaulty()) return;
  const WorkoutDocument document(file.content);
  if (!file.knew_space && document.form() != WorkoutForm::kOlder) {
    link_->Report(MistakeKind::kUnpreparedWorkout,
                  file.name + " was opened without a request for the free space");
  }
  std::string problem = document.problem();
  const std::string ending(file.closing_data.begin(), file.closing_data.end());
  if (problem.empty()) problem = ProblemOfEnding(file.options, ending);
  if (!problem.empty()) {
    link_->Report(MistakeKind::kBadWorkoutDocument, file.name + ": " + problem);
  }
}

// Offset, handle, data.
void Storage::Write(const Request& request) {
  if (RepeatsLast(request)) {
    link_->Acknowledge(request, AckStatus::kOk);
    return;
  }
  OpenFile* file = FileOf(request, request.data[4]);
  if (file == nullptr) return;
  const auto failing = settings_.storage.failing_writes.find(++writes_);
  if (failing != settings_.storage.failing_writes.end()) {
    file->spoilt = true;
    link_->Acknowledge(request, failing->second);
    return;
  }
  if (!CheckWrite(request, *file)) return;
  const std::uint32_t offset = Get32(request.data, 0);
  // Consoles in the field count on after a write that was refused, which leaves a gap.
  if (offset > file->size && !file->spoilt) {
    link_->Report(MistakeKind::kGapInFile, "a write at " + std::to_string(offset) + " of " +
                                               std::to_string(file->size) + " bytes");
  }
  // A gap is kept, as zero bytes.
  Bytes data(offset - file->size, 0);
  data.insert(data.end(), request.data.begin() + 5, request.data.end());
  const AckStatus status = Append(file, data);
  if (status == AckStatus::kOk) {
    file->content.append(data.begin(), data.end());
  } else {
    file->spoilt = true;
  }
  Finish(request, status);
}

bool Storage::CheckWrite(const Request& request, const OpenFile& file) {
  const std::uint32_t offset = Get32(request.data, 0);
  const std::size_t size = request.data.size() - 5;
  if (size > settings_.storage.max_write_size) {
    link_->Refuse(request, MistakeKind::kWriteTooLarge,
                  "a write of " + std::to_string(size) + " bytes, at most " +
                      std::to_string(settings_.storage.max_write_size));
    return false;
  }
  if (offset < file.size) {
    link_->Refuse(
        request, MistakeKind::kOverlapInFile,
        "a write at " + std::to_string(offset) + " of " + std::to_string(file.size) + " bytes");
    return false;
  }
  if (std::uint64_t{offset} + size > settings_.storage.max_file_size) {
    link_->Refuse(request, MistakeKind::kFileTooLarge,
                  "a write of " + std::to_string(size) + " bytes at " + std::to_string(offset) +
                      ", at most " + std::to_string(settings_.storage.max_file_size));
    return false;
  }
  return true;
}

// The iPod's own elements come before the closing data, which ends the document.
void Storage::Close(const Request& request) {
  if (RepeatsLast(request)) {
    link_->Acknowledge(request, AckStatus::kOk);
    return;
  }
  const std::uint8_t handle = request.data[0];
  // No file ever has handle 0. Consoles in the field close it to be sure before they open one.
  if (handle == 0) {
    link_->Acknowledge(request, AckStatus::kBadParameter);
    return;
  }
  OpenFile* file = FileOf(request, handle);
  if (file == nullptr) return;
  CheckDocument(*file);
  AckStatus status = AckStatus::kOk;
  const auto append = [&](const Bytes& data) {
    if (status == AckStatus::kOk) status = Append(file, data);
  };
  if ((file->options & kAppendIpodInfo) != 0) append(ToBytes(IpodInfoElement(settings_)));
  if ((file->options & kAppendSignature) != 0) append(ToBytes(SignatureElement(file->signature)));
  append(file->closing_data);
  open_.erase(handle);
  Finish(request, status);
}

Storage::OpenFile* Storage::FileOf(const Request& request, std::uint8_t handle) {
  const auto found = open_.find(handle);
  if (found != open_.end()) return &found->second;
  link_->Refuse(
      request, MistakeKind::kUnknownHandle,
      CommandName(request.lingo, request.command) + " with handle " + std::to_string(handle));
  return nullptr;
}

AckStatus Storage::Append(OpenFile* file, const Bytes& data) {
  if (data.size() > free_space_ || !files_->Append(file->name, data)) {
    return AckStatus::kOutOfResources;
  }
  free_space_ -= data.size();
  file->size += static_cast<std::uint32_t>(data.size());
  file->signature.Add(data);
  return AckStatus::kOk;
}

// An accessory that missed our acknowledgement sends the same again. It is then done already.
bool Storage::RepeatsLast(const Request& request) const {
  return last_done_ && last_done_->command == request.command && last_done_->data == request.data;
}

void Storage::Finish(const Request& request, AckStatus status) {
  if (status == AckStatus::kOk) last_done_ = request;
  link_->Acknowledge(request, status);
}

}  // namespace ipodsim
