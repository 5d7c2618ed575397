// SPDX-License-Identifier: MIT
// Workouts written to the simulated iPod, read back from the folder where it keeps them, and
// checked by xmllint against the schema in docs/.
#pragma once

#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "simulator/files/folder_files.h"
#include "simulator/simulated_ipod.h"
#include "support/session_test.h"

namespace test {

/// What xmllint says, and how it ends: 0 for a valid document, 1 for one that is no XML, 3 for one
/// that does not keep to the schema.
struct Verdict {
  int status;
  std::string words;
};

struct Names {
  std::wstring manufacturer_id = L"1234";
  std::wstring manufacturer_name = L"Gym";
  std::wstring model = L"T1";
  std::wstring serial_number = L"0001";
};

/// A moment of a workout.
struct Moment {
  tagIPOD_INTERVAL_TYPE event = IPOD_INTERVAL_TYPE_CONTINUE;
  int seconds = 60;
  double kcal = 12.5;
  double distance = 0.25;
  tagIPOD_DISTANCE_TYPE distance_type = IPOD_DISTANCE_TYPE_KM;
  double speed = 240;
  tagIPOD_SPEED_TYPE speed_type = IPOD_SPEED_TYPE_PACE;
  double incline = 1.5;
  int bpm = 120;
  int level = 7;
};

/// A session with a simulated iPod that keeps its workouts in a folder.
class StoredDocument : public ::testing::Test {
 protected:
  explicit StoredDocument(const ipodsim::Settings& settings = {})
      : folder_(NewFolder()), ipod_(OnFolder(settings, folder_)), world_({1}) {
    world_.line().PlugModel(ipod_);
    world_.Advance(2 * kSecond);
    EXPECT_EQ(session_.Open(), 0);
    session_.SetIDPSEnable(1);
    EXPECT_NE(session_.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr), 0);
    world_.Advance(2 * kSecond);
  }
  ~StoredDocument() override {
    session_.Close();
    world_.line().Unplug();
    std::vector<std::string> mistakes;
    for (const auto& mistake : ipod_.mistakes()) mistakes.push_back(mistake.name);
    EXPECT_EQ(mistakes, expected_mistakes_);
    EXPECT_THAT(DrainTraceLog(), ::testing::IsEmpty());
    std::filesystem::remove_all(folder_);
  }

  int Start(tagIPOD_EQUIPMENT_TYPE equipment, double weight_kg = 70, const Names& names = {}) {
    return session_.Sports_StartWorkout(names.manufacturer_id.c_str(),
                                        names.manufacturer_name.c_str(), names.model.c_str(),
                                        names.serial_number.c_str(), equipment, weight_kg);
  }
  int Record(const Moment& moment) {
    return session_.Sports_IntervalWorkout(
        moment.event, moment.seconds, moment.kcal, moment.distance, moment.distance_type,
        moment.speed, moment.speed_type, moment.incline, moment.bpm, moment.level);
  }
  int Finish(const Moment& moment) {
    return session_.Sports_FinishWorkout(moment.seconds, moment.kcal, moment.distance,
                                         moment.distance_type, moment.speed, moment.speed_type,
                                         moment.bpm);
  }
  /// A whole workout with every event, with and without the elements that may be left out.
  void WorkOut(tagIPOD_EQUIPMENT_TYPE equipment, Moment moment) {
    EXPECT_EQ(Start(equipment), 1);
    for (const auto event :
         {IPOD_INTERVAL_TYPE_START, IPOD_INTERVAL_TYPE_CONTINUE, IPOD_INTERVAL_TYPE_PAUSE,
          IPOD_INTERVAL_TYPE_RESUME, IPOD_INTERVAL_TYPE_END}) {
      moment.event = event;
      for (const int bpm : {0, 120}) {
        for (const int level : {-1, 0, 7}) {
          moment.bpm = bpm;
          moment.level = level;
          EXPECT_EQ(Record(moment), 1);
        }
      }
    }
    EXPECT_EQ(Finish(moment), 1);
  }

  std::string Path(const std::string& name) const { return folder_ + "/" + name; }
  std::string Content(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  Verdict Check(const std::string& name) const {
    const std::string command =
        "xmllint --noout --schema '" GYMDATA_SCHEMA "' '" + Path(name) + "' 2>&1";
    FILE* stream = popen(command.c_str(), "r");
    Verdict verdict = {};
    std::array<char, 512> chunk = {};
    while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), stream)) {
      verdict.words.append(chunk.data(), count);
    }
    const int status = pclose(stream);
    verdict.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return verdict;
  }
  void ExpectValid(const std::string& name) const {
    const Verdict verdict = Check(name);
    EXPECT_EQ(verdict.status, 0) << verdict.words << Content(name);
    EXPECT_EQ(verdict.words, Path(name) + " validates\n");
  }
  /// The document with one text in it changed, which must then break the schema.
  void ExpectInvalidWith(const std::string& name, const std::string& text,
                         const std::string& other) const {
    std::string content = Content(name);
    const std::size_t at = content.find(text);
    ASSERT_NE(at, std::string::npos) << text;
    std::ofstream(Path("changed.xml")) << content.replace(at, text.size(), other);
    EXPECT_EQ(Check("changed.xml").status, 3) << text << " -> " << other;
  }

  static std::string NewFolder() {
    char path[] = "/tmp/stored_document_XXXXXX";
    return mkdtemp(path);
  }
  static ipodsim::Settings OnFolder(ipodsim::Settings settings, const std::string& folder) {
    settings.storage.files = ipodsim::OpenFeatureFolder(folder).files;
    return settings;
  }

  /// What the iPod finds wrong; nothing, unless a test says otherwise.
  std::vector<std::string> expected_mistakes_;
  const std::string folder_;
  ipodsim::SimulatedIpod ipod_;
  World world_;
  test::ChosenSession session_;
};

}  // namespace test
