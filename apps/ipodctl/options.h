// SPDX-License-Identifier: MIT
// What a command is to do, and with which iPod.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ipodctl {

/// The simulated iPod of --simulated.
struct SimulationOptions {
  std::string profile = "nano";
  std::uint64_t seed = 1;
  std::string library_file;
  std::string storage_folder;  // for the files that it is given; empty: in memory
  std::vector<std::string> habits;
  std::vector<std::string> faults;
  std::uint32_t baud = 0;  // of the line; 0: bytes take no time
};

/// A workout to do.
struct WorkoutOptions {
  std::string equipment = "treadmill";
  int duration_s = 600;
  int interval_s = 5;
  double speed = 1;       // of the workout's clock, against real time
  std::string recording;  // a CSV file; empty: generated
  double weight_kg = 75;
  std::string manufacturer = "ipodcomm";
  std::string serial_number = "1";
};

struct Options {
  std::string command;

  // The iPod, and how to talk to it.
  std::string port;  // "auto": the one that is found; empty: the library's own
  std::optional<SimulationOptions> simulation;
  bool idps = true;
  bool legacy = false;  // through the legacy interface
  std::string conduct;  // "field", "robust" or "fast"; empty: robust on a port, else fast
  std::string model;
  std::string capture;              // file to record the line in; "-": standard output; empty: none
  std::optional<double> timeout_s;  // for the whole command
  bool watched = false;             // by Wireshark, which ends the session when it has seen enough

  // What is shown.
  bool json = false;
  bool verbose = false;

  // ports
  bool probe = false;

  // browse, play
  std::vector<std::string> path;  // a category's name, then records to walk into
  unsigned char hierarchy = 0;    // 1 audio, 2 video
  std::string category;           // to list instead of the last record's own
  unsigned long from = 0;
  std::optional<unsigned long> count;

  // now
  bool follow = false;
  std::optional<unsigned> follow_seconds;
  bool follow_once = false;  // until the iPod is taken out of the dock

  // seek
  bool forward = true;
  double seek_seconds = 2;

  // shuffle, repeat: empty to read the mode
  std::string mode;
  bool keep = false;

  // decode, monitor
  std::string recording;  // a file; "-" is standard input

  // diagnose
  std::uint32_t line_baud = 0;  // at which the line is heard; 0: the library's own

  // report
  std::string document;
  std::string page;  // empty: beside the document
  std::string language = "en";
  std::string units = "metric";
  std::optional<unsigned> max_heart_rate;

  // prefs: an empty value reads
  std::string preference;
  std::string setting;

  WorkoutOptions workout;

  // userdata: nothing to read only
  std::optional<unsigned> user_weight;
};

}  // namespace ipodctl
