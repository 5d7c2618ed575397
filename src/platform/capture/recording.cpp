// SPDX-License-Identifier: MIT
// A pcapng file under construction.
#include "platform/capture/recording.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/capture/recording_stream.h"

namespace ipodcomm::capture {
namespace {

constexpr char kProgram[] = "ipodcomm " IPODCOMM_VERSION;
constexpr std::size_t kMostWaiting = 4 << 20;  // bytes

}  // namespace

Nanoseconds WallClock() {
  using std::chrono::nanoseconds;
  using std::chrono::system_clock;
  return std::chrono::duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

std::shared_ptr<Recording> Recording::Start(const std::string& file, std::string* error) {
  std::FILE* const stream = OpenRecordingStream(file);
  if (stream == nullptr) {
    *error = std::strerror(errno);
    return nullptr;
  }
  try {
    return std::shared_ptr<Recording>(new Recording(file, stream));
  } catch (const std::system_error& no_thread) {
    *error = no_thread.what();
    return nullptr;
  }
}

Recording::Recording(std::string file, std::FILE* stream)
    : file_(std::move(file)),
      stream_(stream),
      waiting_(SectionHeaderBlock(kProgram)),
      writer_([this] { WriteUntilDone(); }) {}

Recording::~Recording() {
  {
    const std::lock_guard lock(mutex_);
    done_ = true;
  }
  changed_.notify_all();
  writer_.join();
  if (stream_ != stdout) std::fclose(stream_);
}

std::uint32_t Recording::Add(const Interface& line) {
  const std::lock_guard lock(mutex_);
  Queue(InterfaceDescriptionBlock(line));
  return interfaces_++;
}

bool Recording::Add(const Packet& packet) {
  const Bytes block = EnhancedPacketBlock(packet);
  const std::lock_guard lock(mutex_);
  if (failed_ || waiting_.size() + block.size() > kMostWaiting) return false;
  Queue(block);
  return true;
}

void Recording::Add(const Statistics& statistics) {
  const std::lock_guard lock(mutex_);
  Queue(InterfaceStatisticsBlock(statistics));
}

void Recording::Drain() {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, std::chrono::seconds(1),
                    [this] { return waiting_.empty() && !writing_; });
}

void Recording::Queue(const Bytes& block) {
  if (!failed_) waiting_.insert(waiting_.end(), block.begin(), block.end());
  changed_.notify_all();
}

void Recording::WriteUntilDone() {
  SurviveLeavingReaders();
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return done_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    const Bytes blocks = std::exchange(waiting_, {});
    writing_ = true;
    lock.unlock();
    const bool written = Write(blocks);
    lock.lock();
    writing_ = false;
    if (!written) {
      failed_ = true;
      waiting_.clear();
    }
    changed_.notify_all();
  }
}

bool Recording::Write(const Bytes& blocks) {
  const bool written = std::fwrite(blocks.data(), 1, blocks.size(), stream_) == blocks.size() &&
                       std::fflush(stream_) == 0;
  if (!written) {
    std::fprintf(stderr, "ipodcomm: the recording %s ends here: %s\n", file_.c_str(),
                 std::strerror(errno));
  }
  return written;
}

}  // namespace ipodcomm::capture
