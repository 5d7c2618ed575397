// SPDX-License-Identifier: MIT
// The Storage lingo: files that an accessory opens, appends to and closes.

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/files/feature_files.h"
#include "simulator/files/file_ending.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Storage {
 public:
  Storage(Link* link, const Settings& settings);

  /// False on an iPod without the lingo.
  bool Handle(const Request& request);
  /// Any request of the accessory, in any lingo: one that logs a workout has to look first whether
  /// the iPod takes workouts and has space for it.
  void NoticeRequest(const Request& request);
  /// The iPod refused a request of its own accord; what the accessory then leaves out of a file is
  /// not its mistake.
  void NoticeRefusal(const Request& request);
  /// The accessory identifies anew or will send nothing more: a file that is open is a mistake, and
  /// ends where it is, without what closing would append.
  void EndSession();
  /// The accessory is gone: open files end where they are.
  void Forget();

  const FeatureFiles& files() const { return *files_; }
  std::vector<std::string> open_files() const;
  std::uint64_t free_space() const { return free_space_; }

 private:
  struct OpenFile {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t options = 0;
    Bytes closing_data;
    Signature signature;
    std::string content;      // what the accessory wrote
    bool spoilt = false;      // the iPod refused some of it
    bool knew_space = false;  // the accessory had asked for the free space
  };

  void ReturnCapabilities(const Request& request);
  void ReturnFreeSpace(const Request& request);
  void Open(const Request& request);
  bool CheckOpen(const Request& request);
  void CheckPreparation();
  void CheckDocument(const OpenFile& file);
  void Write(const Request& request);
  bool CheckWrite(const Request& request, const OpenFile& file);
  void Close(const Request& request);
  OpenFile* FileOf(const Request& request, std::uint8_t handle);
  AckStatus Append(OpenFile* file, const Bytes& data);
  bool RepeatsLast(const Request& request) const;
  void Finish(const Request& request, AckStatus status);

  Link* link_;
  const Settings& settings_;
  std::shared_ptr<FeatureFiles> files_;
  std::uint64_t free_space_;
  std::map<std::uint8_t, OpenFile> open_;  // by handle
  bool asked_sports_ = false;              // for the capabilities
  bool asked_storage_ = false;             // for the capabilities
  bool asked_space_ = false;
  std::uint8_t last_handle_ = 0;
  std::uint32_t writes_ = 0;
  std::optional<Request> last_done_;  // the last write or close that was carried out
};

}  // namespace ipodsim
