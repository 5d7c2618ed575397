// SPDX-License-Identifier: MIT
#include "wire/recording_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/system.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

// How often a recording that is still being written is looked at, and for how long in vain.
constexpr unsigned kLookMs = 100;
constexpr unsigned kPatienceMs = 5000;

std::string Reason() { return errno != 0 ? std::strerror(errno) : "the system does not say why"; }

}  // namespace

RecordingFile::RecordingFile(const std::string& name, bool follow) {
  if (name == "-") {
    name_ = "standard input";
    ReadInputAsBytes();
    return;
  }
  name_ = name;
  const fs::path path = fs::u8path(name);
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) Refuse("it is a folder");
  errno = 0;
  file_.open(path, std::ios::binary);
  if (!file_.is_open()) Refuse(Reason());
  stream_ = &file_;
  const bool is_file = fs::is_regular_file(path, ignored);
  follow_ = follow && is_file;
  if (is_file && !follow) size_ = fs::file_size(path, ignored);
}

std::size_t RecordingFile::Read(std::uint8_t* bytes, std::size_t count) {
  for (unsigned waited_ms = 0;; waited_ms += kLookMs) {
    const std::size_t read = Look(bytes, count);
    if (read > 0) return read;
    if (!follow_ || waited_ms >= kPatienceMs || !PauseMs(kLookMs)) return 0;
  }
}

std::size_t RecordingFile::Look(std::uint8_t* bytes, std::size_t count) {
  errno = 0;
  // The end that was met is none any more where the file grows.
  if (follow_) stream_->clear();
  stream_->read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(count));
  const auto read = static_cast<std::size_t>(stream_->gcount());
  if (stream_->bad()) Refuse(Reason());
  if (follow_ && read == 0) RequireSameFile();
  position_ += read;
  return read;
}

// A program that is started again writes its recording from the beginning.
void RecordingFile::RequireSameFile() const {
  std::error_code unknown;
  const std::uint64_t size = fs::file_size(fs::u8path(name_), unknown);
  if (unknown || size >= position_) return;
  throw CommandFailure(kInputFile, name_ + " has been begun anew; start again to read it");
}

void RecordingFile::RequireEnd(const ipodwire::RecordingReader& reader) const {
  switch (reader.end()) {
    case ipodwire::RecordingReader::End::kNoRecording:
    case ipodwire::RecordingReader::End::kOtherLinkType:
      throw CommandFailure(kInputFile, name_ + " " + reader.problem());
    case ipodwire::RecordingReader::End::kCut:
    case ipodwire::RecordingReader::End::kDamaged:
      throw CommandFailure(kDamaged, name_ + " " + reader.problem());
    case ipodwire::RecordingReader::End::kClosed:
    case ipodwire::RecordingReader::End::kNone:
      break;
  }
}

void RecordingFile::Refuse(const std::string& why) const {
  throw CommandFailure(kInputFile, "cannot read " + name_ + ": " + why);
}

}  // namespace ipodctl
