// SPDX-License-Identifier: MIT
#include "wire/extcap_follower.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "console/failure.h"
#include "console/interrupt.h"
#include "wire/recording_file.h"
#include "wire/wireshark_pipe.h"

namespace ipodctl {

namespace {

namespace fs = std::filesystem;

constexpr unsigned kGrowthLookMs = 100;
// What a recording begins with, in either byte order.
constexpr std::uint8_t kBeginning[] = {0x0A, 0x0D, 0x0D, 0x0A};

class Follower {
 public:
  Follower(const std::string& recording, const std::string& pipe) : name_(recording), pipe_(pipe) {
    const fs::path path = fs::u8path(recording);
    std::error_code ignored;
    while (!fs::exists(path, ignored) && GoOn()) {
    }
    if (!wanted_ || fs::is_regular_file(path, ignored)) return;
    throw CommandFailure(kInputFile, recording +
                                         " is no file; name the one that the session is "
                                         "being recorded in");
  }

  void Run() {
    if (!wanted_) return;
    RecordingFile file(name_, /*follow=*/true);
    ipodwire::RecordingReader reader([&](std::uint8_t* bytes, std::size_t count) {
      const std::size_t read = Read(&file, bytes, count);
      waiting_.insert(waiting_.end(), bytes, bytes + read);
      return read;
    });
    ipodwire::Packet packet;
    while (wanted_ && reader.Next(&packet)) {
      is_recording_ = true;
      Pass();
    }
    if (wanted_) file.RequireEnd(reader);
  }

 private:
  // Waits, with all that was read so far passed on, unless nothing says yet that it is a recording.
  std::size_t Read(RecordingFile* file, std::uint8_t* bytes, std::size_t count) {
    for (;;) {
      const std::size_t read = file->Look(bytes, count);
      if (read > 0) return read;
      if (is_recording_) Pass();
      RequireBeginning();
      if (!GoOn()) return 0;
    }
  }

  // However little there is, nothing that comes behind it makes a recording of something else.
  void RequireBeginning() const {
    const std::size_t count = is_recording_ ? 0 : std::min(waiting_.size(), sizeof kBeginning);
    if (std::equal(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(count),
                   kBeginning)) {
      return;
    }
    throw CommandFailure(kInputFile, name_ + " is no recording");
  }

  void Pass() {
    wanted_ = wanted_ && pipe_.Write(waiting_.data(), waiting_.size());
    waiting_.clear();
  }

  bool GoOn() {
    wanted_ = wanted_ && PauseMs(kGrowthLookMs) && pipe_.IsRead();
    return wanted_;
  }

  const std::string name_;
  WiresharkPipe pipe_;
  std::vector<std::uint8_t> waiting_;
  bool is_recording_ = false;
  bool wanted_ = true;
};

}  // namespace

void FollowForWireshark(const std::string& recording, const std::string& pipe) {
  Follower(recording, pipe).Run();
}

}  // namespace ipodctl
