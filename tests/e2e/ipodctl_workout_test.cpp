// SPDX-License-Identifier: MIT
// Workouts with ipodctl: after each run the simulated iPod's own files are looked at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "live_lines.h"
#include "support/json_lines.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::AckStatus;
using ipodsim::Profile;
using nlohmann::json;
using test::Ended;
using test::Object;
using test::Objects;
using test::Process;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr std::uint32_t kHeaderLines = 13;

// A climb of half a minute, with a pause.
constexpr const char* kClimb =
    "seconds,distance,energy,spm,incline,heart rate,level,event\n"
    "0,0,0,0,0,84,3,\n"
    "10,5.26,2.345,62.9,1.25,101,4,\n"
    "12,6,3,0,0,110,4,pause\n"
    "18,6,3,0,0,,,resume\n"
    "20,7.1,3.5,60,0,115,4,\n"
    "30,12,6,64,0,121,4,\n";

constexpr const char* kClimbIntervals =
    "\t<interval>\n\t\t<event>start</event>\n\t\t<sec>0</sec>\n\t\t<kCal>0.00</kCal>\n"
    "\t\t<floors>0.0</floors>\n\t\t<spm>0</spm>\n\t\t<incline>0.0</incline>\n"
    "\t\t<bpm>84</bpm>\n\t\t<level>3</level>\n\t</interval>\n"
    "\t<interval>\n\t\t<event>continue</event>\n\t\t<sec>10</sec>\n\t\t<kCal>2.35</kCal>\n"
    "\t\t<floors>5.3</floors>\n\t\t<spm>62</spm>\n\t\t<incline>1.2</incline>\n"
    "\t\t<bpm>101</bpm>\n\t\t<level>4</level>\n\t</interval>\n"
    "\t<interval>\n\t\t<event>pause</event>\n\t\t<sec>12</sec>\n\t\t<kCal>3.00</kCal>\n"
    "\t\t<floors>6.0</floors>\n\t\t<spm>0</spm>\n\t\t<incline>0.0</incline>\n"
    "\t\t<bpm>110</bpm>\n\t\t<level>4</level>\n\t</interval>\n"
    "\t<interval>\n\t\t<event>resume</event>\n\t\t<sec>18</sec>\n\t\t<kCal>3.00</kCal>\n"
    "\t\t<floors>6.0</floors>\n\t\t<spm>0</spm>\n\t\t<incline>0.0</incline>\n"
    "\t</interval>\n"
    "\t<interval>\n\t\t<event>end</event>\n\t\t<sec>30</sec>\n\t\t<kCal>6.00</kCal>\n"
    "\t\t<floors>12.0</floors>\n\t\t<spm>64</spm>\n\t\t<incline>0.0</incline>\n"
    "\t\t<bpm>121</bpm>\n\t\t<level>4</level>\n\t</interval>\n"
    "\t<workoutSummary>\n\t\t<sec>30</sec>\n\t\t<kCal>6.00</kCal>\n"
    "\t\t<floors>12.0</floors>\n\t\t<spm>30</spm>\n\t\t<bpm>102</bpm>\n\t</workoutSummary>\n";

std::string FileOf(const DockedIpod& dock, const std::string& name = "gym-0001.xml") {
  std::string content;
  dock.server().Inspect(
      [&](const ipodsim::SimulatedIpod& ipod) { content = ipod.feature_files().Read(name); });
  return content;
}

std::vector<std::string> OpenFiles(const DockedIpod& dock) {
  std::vector<std::string> names;
  dock.server().Inspect(
      [&](const ipodsim::SimulatedIpod& ipod) { names = ipod.open_feature_files(); });
  return names;
}

std::string ContentOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

unsigned CountOf(const std::string& part, const std::string& text) {
  unsigned count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

void ExpectSentence(const Ended& ended, int status, const std::string& sentence) {
  EXPECT_EQ(ended.status, status) << ended.err;
  EXPECT_EQ(ended.err, "ipodctl: " + sentence + ".\n");
}

// A workout of 20 seconds in half a second: 13 header lines, 5 intervals, a summary.
std::unique_ptr<Process> StartShortWorkout(const DockedIpod& dock) {
  return dock.Start({"workout", "--duration", "20", "--speed", "40"});
}

// An iPod that fails one write, counted from 1.
ipodsim::Settings FailingWrite(std::uint32_t number, AckStatus status = AckStatus::kFailed) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.storage.failing_writes[number] = status;
  return settings;
}

TEST(IpodctlWorkout, LogsAGeneratedWorkoutWithNamesEscaped) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"workout", "--duration", "1:30", "--speed", "100", "--weight",
                                    "68.54", "--manufacturer", "Größe & <Söhne>", "--serial-number",
                                    "橋 7", "--model", "QZ\"104"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.err, "");
  const std::string file = FileOf(dock);
  EXPECT_THAT(file,
              StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<gymData>\n"
                         "\t<vers>1</vers>\n"
                         "\t<equipmentInfo>\n"
                         "\t\t<manufacturerID>ipodcomm</manufacturerID>\n"
                         "\t\t<manufacturerName>Größe &amp; &lt;Söhne&gt;</manufacturerName>\n"
                         "\t\t<type>Treadmill</type>\n"
                         "\t\t<model>QZ\"104</model>\n"
                         "\t\t<serialNumber>橋 7</serialNumber>\n"
                         "\t</equipmentInfo>\n"
                         "\t<userInfo>\n"
                         "\t\t<kg>68.5</kg>\n"
                         "\t</userInfo>\n"
                         "\t<interval>\n"
                         "\t\t<event>start</event>\n"
                         "\t\t<sec>0</sec>\n"));
  EXPECT_EQ(CountOf("<event>start</event>", file), 1U);
  EXPECT_EQ(CountOf("<event>pause</event>", file), 1U);
  EXPECT_EQ(CountOf("<event>resume</event>", file), 1U);
  EXPECT_EQ(CountOf("<event>end</event>\n\t\t<sec>90</sec>", file), 1U);
  EXPECT_EQ(CountOf("<workoutSummary>\n\t\t<sec>90</sec>", file), 1U);
  EXPECT_THAT(file, EndsWith("</gymData>"));
  EXPECT_THAT(OpenFiles(dock), ElementsAre());
  EXPECT_EQ(dock.mistakes(), "");
  EXPECT_THAT(ended.out, AllOf(StartsWith("Workout on treadmill, 1:30, written to the iPod in "),
                               HasSubstr("\n     0:36  pause "), HasSubstr("\n     0:46  resume "),
                               HasSubstr("\n     1:30  end "),
                               HasSubstr("\nSaved as workout file 1 on the iPod: ")));
}

TEST(IpodctlWorkout, WritesARecordedWorkoutByteForByte) {
  const TemporaryFolder folder;
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"workout", "--equipment", "stepper", "--from",
                                    folder.Write("climb.csv", kClimb), "--speed", "100"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string file = FileOf(dock);
  EXPECT_THAT(file, HasSubstr("\t\t<type>Stepper</type>\n"));
  const std::string header_end = "\t</userInfo>\n";
  const std::size_t start = file.find(header_end) + header_end.size();
  EXPECT_THAT(file.substr(start), StartsWith(std::string(kClimbIntervals) + "\t<iPodInfo>"));
  // What was told to have been written is all that the iPod did not add itself.
  std::string written = std::to_string(file.find("\t<iPodInfo>"));
  written.insert(written.size() - 3, ",");
  EXPECT_THAT(ended.out, EndsWith(": 5 intervals and a summary, " + written + " bytes\n"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlWorkout, TellsMachinesEveryInterval) {
  const TemporaryFolder folder;
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"workout", "--equipment", "stepper", "--from",
                                    folder.Write("climb.csv", kClimb), "--speed", "100", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<json> objects = Objects(ended.out);
  ASSERT_EQ(objects.size(), 6U) << ended.out;
  json pause = objects[2];
  EXPECT_GT(pause.at("bytes"), objects[1].at("bytes"));
  pause.erase("bytes");
  EXPECT_EQ(pause, json({{"event", "pause"},
                         {"seconds", 12},
                         {"kcal", 3.0},
                         {"floors", 6.0},
                         {"spm", 0},
                         {"incline", 0.0},
                         {"bpm", 110},
                         {"level", 4}}));
  EXPECT_FALSE(objects[3].contains("bpm"));
  EXPECT_FALSE(objects[3].contains("level"));
  const std::size_t written = FileOf(dock).find("\t<iPodInfo>");
  EXPECT_EQ(objects[5], json({{"event", "saved"},
                              {"seconds", 30},
                              {"intervals", 5},
                              {"bytes", written},
                              {"kept", true},
                              {"file", nullptr}}));
}

TEST(IpodctlWorkout, NamesTheFileThatASimulatedIpodKeeps) {
  const TemporaryFolder folder;
  const std::string files = folder.path("files");
  const auto run = [](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"workout", "--duration", "5", "--speed", "100"});
    return std::make_unique<Process>(IPODCTL_PROGRAM, arguments);
  };
  const auto forgetful = run({"--simulated"});
  const Ended first = run({"--simulated", "--storage", files})->Wait();
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_THAT(first.out, HasSubstr("\nSaved as " + files + "/gym-0001.xml: "));
  EXPECT_THAT(ContentOf(files + "/gym-0001.xml"), EndsWith("</gymData>"));
  const Ended second = run({"--simulated", "--storage", files, "--json"})->Wait();
  EXPECT_EQ(Objects(second.out).back().at("file"), files + "/gym-0002.xml");
  EXPECT_THAT(ContentOf(files + "/gym-0002.xml"), EndsWith("</gymData>"));
  const Ended forgotten = forgetful->Wait();
  EXPECT_EQ(forgotten.status, 0) << forgotten.err;
  EXPECT_THAT(forgotten.out,
              AllOf(HasSubstr("\nSaved as gym-0001.xml in the simulated iPod's memory: "),
                    EndsWith("\nThat memory is gone now; --storage DIR keeps files.\n")));
}

TEST(IpodctlWorkout, ShowsALiveLineOnATerminal) {
  const DockedIpod dock;
  Process terminal(IPODCTL_PROGRAM,
                   {"--port", dock.device(), "workout", "--duration", "15", "--speed", "15"},
                   Process::Setting::kErrorsOnTerminal);
  const Ended ended = terminal.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.err, AllOf(HasSubstr("Waking and identifying"), HasSubstr("\r  Working  █"),
                               HasSubstr(" km  "), HasSubstr(" kcal  "), HasSubstr(" bpm  "),
                               HasSubstr(" bytes"), Not(HasSubstr("IDPS"))));
}

TEST(IpodctlWorkout, CutsTheLiveLineToTheWindowAlsoWhenItChanges) {
  const DockedIpod dock;
  Process terminal(IPODCTL_PROGRAM,
                   {"--port", dock.device(), "workout", "--duration", "30", "--speed", "15"},
                   Process::Setting::kErrorsOnTerminal);
  terminal.Resize(40);
  ASSERT_TRUE(terminal.WaitForErrors("\r  Working  0:"));
  terminal.Resize(30);
  const Ended ended = terminal.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<std::size_t> columns = e2e::ColumnsOfLiveLines(ended.err);
  ASSERT_GT(columns.size(), 20U);
  EXPECT_EQ(*std::max_element(columns.begin(), columns.end()), 39U);
  EXPECT_EQ(*std::max_element(columns.end() - 10, columns.end()), 29U);
  EXPECT_THAT(ended.err, HasSubstr("\r  Working  0:"));
}

TEST(IpodctlWorkout, PassesTheLibrarysDebugOutputOnWhenVerbose) {
  const DockedIpod dock;
  const Ended ended =
      dock.Ipodctl({"workout", "--duration", "5", "--speed", "100", "--verbose", "--json"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("ipodctl: opening "), HasSubstr("Time to do IDPS ")));
  EXPECT_EQ(Objects(ended.out).back().at("event"), "saved");
}

TEST(IpodctlWorkout, CtrlCEndsTheDocumentInGoodOrder) {
  const DockedIpod dock;
  const auto workout = dock.Start({"workout", "--duration", "1:00:00"});
  ASSERT_TRUE(workout->WaitForOutput("start"));
  workout->Signal(SIGINT);
  const Ended ended = workout->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: interrupted at 0:0"),
                               EndsWith("; the workout until then is complete in workout "
                                        "file 1 on the iPod.\n")));
  EXPECT_THAT(ended.out, AllOf(HasSubstr("  end "), HasSubstr("\nSaved as ")));
  const std::string file = FileOf(dock);
  EXPECT_EQ(CountOf("<event>end</event>", file), 1U);
  EXPECT_EQ(CountOf("</workoutSummary>", file), 1U);
  EXPECT_THAT(file, EndsWith("</gymData>"));
  EXPECT_THAT(OpenFiles(dock), ElementsAre());
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlWorkout, StartsAndEndsALogThatIsInterruptedInItsHeader) {
  const DockedIpod dock;
  const auto workout = dock.Start({"workout", "--duration", "1:00:00"});
  ASSERT_TRUE(workout->WaitForOutput("written to the iPod"));
  workout->Signal(SIGINT);
  const Ended ended = workout->Wait();
  EXPECT_EQ(ended.status, 130);
  const std::string file = FileOf(dock);
  EXPECT_EQ(CountOf("<event>start</event>", file), 1U);
  EXPECT_EQ(CountOf("<event>end</event>", file), 1U);
  EXPECT_THAT(file, EndsWith("</gymData>"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlWorkout, StartsTheClockAtARecordingsFirstReading) {
  const TemporaryFolder folder;
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl(
      {"workout", "--from",
       folder.Write("late.csv", "seconds,km,kcal,pace\n359000,0,0,0\n359001,0,0,0\n")});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(FileOf(dock), HasSubstr("<event>end</event>\n\t\t<sec>359001</sec>"));
}

TEST(IpodctlWorkout, SaysWhyAnIpodTakesNone) {
  ipodsim::Settings no_log = SettingsOf(Profile::kNano);
  no_log.sports.capabilities = ipodsim::kUserDataCapability;
  ipodsim::Settings no_storage = SettingsOf(Profile::kNano);
  no_storage.refused[{0x0C, 0x01}] = AckStatus::kBadParameter;
  ipodsim::Settings small_writes = SettingsOf(Profile::kNano);
  small_writes.storage.max_write_size = 127;
  ipodsim::Settings full = SettingsOf(Profile::kNano);
  full.storage.free_space = 0x4FFFFF;
  ipodsim::Settings small_files = SettingsOf(Profile::kNano);
  small_files.storage.max_file_size = 2000;
  ipodsim::Settings closed = SettingsOf(Profile::kNano);
  closed.refused[{0x0C, 0x12}] = AckStatus::kOutOfResources;
  const std::vector<std::pair<ipodsim::Settings, std::string>> cases = {
      {SettingsOf(Profile::kNoSports),
       "this iPod does not take workouts: it has no Sports service; dock one that has"},
      {no_log, "this iPod does not take workouts: its Sports service keeps no log of them"},
      {no_storage, "the iPod refused to tell its Storage capabilities (status 3, bad parameter)"},
      {small_writes,
       "this iPod's Storage service takes only 127 bytes at a time, and this workout needs 164"},
      {full,
       "the iPod has only 4.9 MB of free space, and a workout needs 5.0 MB; remove something from "
       "it and try again"},
      {small_files,
       "this iPod keeps files of up to 2,000 bytes, and this workout takes 2,273; a longer "
       "--interval makes it smaller"},
      {closed, "the iPod refused a file for the workout; nothing was saved"},
  };
  std::vector<std::unique_ptr<DockedIpod>> docks;
  std::vector<std::unique_ptr<Process>> runs;
  for (const auto& [settings, sentence] : cases) {
    docks.push_back(std::make_unique<DockedIpod>(settings));
    runs.push_back(StartShortWorkout(*docks.back()));
  }
  for (std::size_t i = 0; i < cases.size(); ++i) {
    ExpectSentence(runs[i]->Wait(), 1, cases[i].second);
    EXPECT_EQ(FileOf(*docks[i]), "");
    EXPECT_EQ(docks[i]->mistakes(), "");
  }
}

TEST(IpodctlWorkout, SaysWhatIsSavedWhenTheIpodRefusesAPart) {
  const DockedIpod header_dock(FailingWrite(5));
  const DockedIpod interval_dock(FailingWrite(kHeaderLines + 3, AckStatus::kOutOfResources));
  const DockedIpod summary_dock(FailingWrite(kHeaderLines + 6));
  ipodsim::Settings keeps_open = SettingsOf(Profile::kNano);
  keeps_open.refused[{0x0C, 0x08}] = AckStatus::kFailed;
  const DockedIpod close_dock(keeps_open);
  const auto header = StartShortWorkout(header_dock);
  const auto interval = StartShortWorkout(interval_dock);
  const auto summary = StartShortWorkout(summary_dock);
  const auto close = StartShortWorkout(close_dock);

  ExpectSentence(header->Wait(), 1,
                 "the iPod did not take 1 line of the workout's header; workout file 1 on the iPod "
                 "holds no more than the beginning of a header");
  EXPECT_EQ(CountOf("<interval>", FileOf(header_dock)), 0U);

  const Ended refused = interval->Wait();
  const std::string begun = FileOf(interval_dock);
  ExpectSentence(refused, 1,
                 "the iPod refused the interval at 0:10; workout file 1 on the iPod holds the "
                 "header and 2 intervals up to 0:05 (" +
                     std::to_string(begun.size()) + " bytes), but not the summary and the end");
  EXPECT_THAT(begun, AllOf(HasSubstr("<sec>5</sec>"), EndsWith("\t</interval>\n")));
  EXPECT_EQ(interval_dock.mistakes(), "");

  const Ended cut = summary->Wait();
  const std::string without_summary = FileOf(summary_dock);
  ExpectSentence(
      cut, 1,
      "the iPod did not take the workout's summary; workout file 1 on the iPod holds the "
      "header and 5 intervals up to 0:20 (1,124 bytes), but not the summary");
  EXPECT_THAT(without_summary.substr(0, 1124), EndsWith("\t</interval>\n"));
  EXPECT_THAT(without_summary, AllOf(HasSubstr("<event>end</event>"), EndsWith("</gymData>")));

  ExpectSentence(close->Wait(), 1,
                 "the iPod refused the end of the workout's file; workout file 1 on the iPod "
                 "holds the header, 5 intervals up to 0:20 and the summary (1,249 bytes), but "
                 "perhaps not the end");
  EXPECT_EQ(FileOf(close_dock).size(), 1249U);
  EXPECT_THAT(FileOf(close_dock), EndsWith("</workoutSummary>\n"));
}

// The disk of the computer that the simulated iPod runs on.
class FullDisk : public ipodsim::MemoryFeatureFiles {
 public:
  bool Append(const std::string& name, const ipodsim::Bytes& data) override {
    return Read(name).size() + data.size() <= 900 && MemoryFeatureFiles::Append(name, data);
  }
};

TEST(IpodctlWorkout, SaysWhatIsSavedWhenTheDiskIsFull) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.storage.files = std::make_shared<FullDisk>();
  const DockedIpod dock(settings);
  const Ended ended = StartShortWorkout(dock)->Wait();
  const std::string file = FileOf(dock);
  ExpectSentence(ended, 1,
                 "the iPod refused the interval at 0:15; workout file 1 on the iPod holds the "
                 "header and 3 intervals up to 0:10 (" +
                     std::to_string(file.size()) + " bytes), but not the summary and the end");
}

TEST(IpodctlWorkout, SaysWhatIsSavedWhenTheIpodIsPulledOutOrFallsSilent) {
  const TemporaryFolder folder;
  const auto dock = [&folder](const std::string& name) {
    auto simulator = std::make_unique<Process>(
        IPODSIM_PROGRAM, std::vector<std::string>{"--link", folder.path(name), "--storage",
                                                  folder.path(name + "-files")});
    EXPECT_TRUE(simulator->WaitForOutput(folder.path(name)));
    return simulator;
  };
  const auto work_out = [&folder](const std::string& name) {
    auto workout = std::make_unique<Process>(
        IPODCTL_PROGRAM, std::vector<std::string>{"--port", folder.path(name), "workout",
                                                  "--interval", "1", "--duration", "1:00:00"});
    EXPECT_TRUE(workout->WaitForOutput("start"));
    return workout;
  };
  const auto expect_gone = [&folder](const Ended& ended, const std::string& name) {
    const std::string file = ContentOf(folder.path(name + "-files/gym-0001.xml"));
    EXPECT_THAT(file, AllOf(HasSubstr("<event>start</event>"), EndsWith("\t</interval>\n")));
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err,
                AllOf(StartsWith("ipodctl: the iPod on " + folder.path(name) +
                                 " no longer answers; workout file 1 on the iPod holds the "
                                 "header and "),
                      EndsWith(" bytes), but not the summary and the end.\n")));
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1);
  };
  const auto pulled = dock("pulled");
  const auto silent = dock("silent");
  const auto pulled_workout = work_out("pulled");
  const auto silent_workout = work_out("silent");
  pulled->Signal(SIGKILL);
  silent->Signal(SIGSTOP);
  expect_gone(pulled_workout->Wait(), "pulled");
  expect_gone(silent_workout->Wait(), "silent");
}

TEST(IpodctlWorkout, RefusesABadRecordingBeforeAnythingIsSaved) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("bad.csv", "seconds,km,kcal,pace\n0,0,0,0\n9,much,0,0\n");
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"workout", "--from", file});
  ExpectSentence(ended, 66, file + ", line 3: km 'much' is not a number");
  ExpectSentence(dock.Ipodctl({"workout", "--from", folder.path("none.csv")}), 66,
                 "cannot read " + folder.path("none.csv"));
  EXPECT_EQ(FileOf(dock), "");
  dock.server().Inspect(
      [](const ipodsim::SimulatedIpod& ipod) { EXPECT_FALSE(ipod.identified()); });
}

constexpr const char* kRide =
    "Mood;\"Distance (km)\";Heart Rate;Elapsed Time;Calories;Pace\n"
    "\"good; even very\";0;90;0;0;360\n"
    "good;0,5;95;4;2,5;360\n";

TEST(IpodctlWorkout, ReadsWhatASpreadsheetHasWrittenAndNamesWhatItIgnores) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("ride.csv", kRide);
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"workout", "--from", file, "--speed", "100"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err,
            "ipodctl: " + file +
                ": ignoring what no column is named by: 'Mood'; columns are seconds, "
                "distance, km or floors, energy or kcal, pace, spm or rpm, incline, heart "
                "rate or bpm, level and event.\n");
  EXPECT_THAT(FileOf(dock), HasSubstr("<sec>4</sec>\n\t\t<kCal>2.50</kCal>\n\t\t<km>0.50</km>"));
}

TEST(IpodctlWorkout, ReadsARecordingFromStandardInput) {
  const TemporaryFolder folder;
  folder.Write("climb.csv", kClimb);
  const DockedIpod dock;
  const auto piped = [&](const std::string& from) {
    return test::RunProgram(
        "/bin/sh", {"-c", "exec '" IPODCTL_PROGRAM "' --port " + dock.device() +
                              " workout --equipment stepper --speed 100 --from - <" + from});
  };
  const Ended ended = piped(folder.path("climb.csv"));
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(FileOf(dock), HasSubstr(kClimbIntervals));
  ExpectSentence(piped("/dev/null"), 66, "standard input is empty");
}

TEST(IpodctlWorkout, RefusesADistanceThatGoesBack) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("back.csv", "seconds,km,kcal,pace\n0,1,0,0\n9,0.5,0,0\n");
  ExpectSentence(
      test::Ipodctl({"--simulated", "workout", "--from", file}), 66,
      file + ", line 3: distance goes back from 1 to 0.5; it is counted since the start");
}

TEST(IpodctlUserdata, ShowsAndSetsWhatTheIpodKnowsAboutItsUser) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.sports.user_data = {2, 755, 41};
  const DockedIpod dock(settings);
  const DockedIpod no_data_dock([] {
    ipodsim::Settings none = SettingsOf(Profile::kNano);
    none.sports.capabilities = ipodsim::kGymCapability;
    return none;
  }());
  const DockedIpod no_sports_dock(SettingsOf(Profile::kNoSports));
  ipodsim::Settings stubborn = SettingsOf(Profile::kNano);
  stubborn.refused[{0x09, 0x8A}] = AckStatus::kFailed;
  const DockedIpod stubborn_dock(stubborn);
  const auto no_data = no_data_dock.Start({"userdata"});
  const auto no_sports = no_sports_dock.Start({"userdata", "--weight", "70"});
  const auto refused = stubborn_dock.Start({"userdata", "--weight", "70"});

  const Ended shown = dock.Ipodctl({"userdata"});
  EXPECT_EQ(shown.status, 0) << shown.err;
  EXPECT_EQ(shown.out,
            "  Weight              755\n"
            "  Flag (data type 2)  set\n"
            "  Value (data type 4) 41\n");
  const json heaviest = {{"weight", 65535}, {"flag", true}, {"value", 41}};
  EXPECT_EQ(Object(dock.Ipodctl({"userdata", "--weight", "65535", "--json"}).out), heaviest);
  EXPECT_EQ(Object(dock.Ipodctl({"userdata", "--json"}).out), heaviest);
  EXPECT_EQ(dock.mistakes(), "");

  ExpectSentence(no_data->Wait(), 1,
                 "this iPod knows nothing about its user: its Sports service keeps no such data");
  ExpectSentence(no_sports->Wait(), 1,
                 "this iPod knows nothing about its user: it has no Sports service");
  ExpectSentence(refused->Wait(), 1,
                 "the iPod refused to take the weight (status 1, command failed)");
}

}  // namespace
