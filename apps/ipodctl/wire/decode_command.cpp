// SPDX-License-Identifier: MIT
#include "wire/decode_command.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "wire/transcript.h"
#include "wire/wire_lines.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

// How often a recording that is still being written is looked at, and for how long in vain.
constexpr unsigned kLookMs = 100;
constexpr unsigned kPatienceMs = 5000;

// The file of a recording; "-" is standard input.
class RecordingFile {
 public:
  /// @param follow whether to wait at the end of a regular file for what is still being written
  RecordingFile(const std::string& name, bool follow) {
    if (name == "-") {
      name_ = "standard input";
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
    const bool grows = fs::is_regular_file(path, ignored);
    follow_ = follow && grows;
    if (grows) size_ = fs::file_size(path, ignored);
  }

  const std::string& name() const { return name_; }
  /// 0 when unknown.
  std::uint64_t size() const { return size_; }

  /// Reads `count` bytes, or what there is of them at the end.
  std::size_t Read(std::uint8_t* bytes, std::size_t count) {
    for (unsigned waited_ms = 0;; waited_ms += kLookMs) {
      errno = 0;
      stream_->read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(count));
      const auto read = static_cast<std::size_t>(stream_->gcount());
      if (read > 0) return read;
      if (stream_->bad()) Refuse(Reason());
      if (!follow_ || waited_ms >= kPatienceMs || !PauseMs(kLookMs)) return 0;
      stream_->clear();
    }
  }

 private:
  static std::string Reason() {
    return errno != 0 ? std::strerror(errno) : "the system does not say why";
  }

  [[noreturn]] void Refuse(const std::string& why) const {
    throw CommandFailure(kInputFile, "cannot read " + name_ + ": " + why);
  }

  std::string name_;
  std::ifstream file_;
  std::istream* stream_ = &std::cin;
  std::uint64_t size_ = 0;
  bool follow_ = false;
};

// Throws where the reading did not end with the recording.
void RequireEnd(const RecordingFile& file, const ipodwire::RecordingReader& reader) {
  switch (reader.end()) {
    case ipodwire::RecordingReader::End::kNoRecording:
    case ipodwire::RecordingReader::End::kOtherLinkType:
      throw CommandFailure(kInputFile, file.name() + " " + reader.problem());
    case ipodwire::RecordingReader::End::kCut:
    case ipodwire::RecordingReader::End::kDamaged:
      throw CommandFailure(kDamaged, file.name() + " " + reader.problem());
    case ipodwire::RecordingReader::End::kClosed:
    case ipodwire::RecordingReader::End::kNone:
      break;
  }
}

}  // namespace

int RunDecode(const Options& options, Output& output) {
  RecordingFile file(options.recording, options.command == "monitor");
  ipodwire::RecordingReader reader(
      [&](std::uint8_t* bytes, std::size_t count) { return file.Read(bytes, count); });
  WireLines lines(output);
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { lines.Print(told); });
  ipodwire::Packet packet;
  while (!Interrupted() && output.Good() && reader.Next(&packet)) transcript.Add(packet);
  lines.PrintEnd(transcript.End());
  StopIfInterrupted();
  RequireEnd(file, reader);
  return kSuccess;
}

}  // namespace ipodctl
