// SPDX-License-Identifier: MIT
// What the library records, on its way to this program itself.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace ipodctl {

/// The library records into a pipe from now on, and a thread reads the other end. Made before the
/// library's own recording begins, it ends after that, with all that was recorded: a static object
/// does.
class RecordingPipe {
 public:
  /// @param reader what the thread does: reads until there is nothing more
  explicit RecordingPipe(const std::function<void(RecordingPipe&)>& reader);
  ~RecordingPipe();
  RecordingPipe(const RecordingPipe&) = delete;
  RecordingPipe& operator=(const RecordingPipe&) = delete;

  /// Ends the thread sooner, once the library's port is closed, with what was recorded until then.
  void Finish();

  /// For the reader. Waits for what is recorded next until the end is asked for; then 0.
  /// @param meanwhile is called several times a second while it waits
  std::size_t Read(
      std::uint8_t* bytes, std::size_t count, const std::function<void()>& meanwhile = [] {});
  /// For the reader: whether a line is being recorded, whose end Finish() awaits.
  void set_recording(bool recording);

 private:
  /// The two ends, as each system has them.
  class Ends {
   public:
    Ends() = default;
    Ends(const Ends&) = delete;
    Ends& operator=(const Ends&) = delete;
    virtual ~Ends() = default;
    virtual std::string NameOfWriteEnd() const = 0;
    /// Lets a reader that waits look whether the end is asked for.
    virtual void Wake() = 0;
  };
  class SystemEnds;
  /// Null where the system has none to give.
  static std::unique_ptr<Ends> MakeEnds();
  SystemEnds& ends() const;
  void End();

  const std::unique_ptr<Ends> ends_;  // null: nothing is read
  std::atomic<bool> ending_ = false;
  std::atomic<bool> drained_ = false;  // all that is recorded is in the pipe
  std::atomic<int> patience_ms_ = 0;
  std::thread reader_;  // the last member: it uses the others
};

}  // namespace ipodctl
