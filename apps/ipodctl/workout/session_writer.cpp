// SPDX-License-Identifier: MIT
// Writes workouts through the library's three operations.
#include "workout/session_writer.h"

#include "console/failure.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "ipod/sports_service.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

namespace {

constexpr __int64 kLeastFreeSpace = 5 << 20;  // the library starts no workout with less

std::string Megabytes(__int64 bytes) {
  const auto tenths = bytes * 10 / (1 << 20);
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

}  // namespace

SessionWorkoutWriter::SessionWorkoutWriter(Session& session, const DockLine& dock)
    : WorkoutLog(dock), session_(session) {}

void SessionWorkoutWriter::RequireRoom(std::size_t largest_piece, std::size_t file_size) {
  RequireSports();
  RequireStorage(largest_piece, file_size);
  RequireSpace();
}

void SessionWorkoutWriter::RequireSports() {
  RequireSportsService(session_, "this iPod does not take workouts", "; dock one that has");
  unsigned short caps = 0;
  session_.Require(session_.ipod().Command_SportsGetIpodCaps(&caps, nullptr) != 0,
                   "tell its Sports capabilities");
  if ((caps & ipod::IPOD_SPORTS_GETIPODCAPS_MASK_GYM) == 0) {
    throw CommandFailure(kFailed,
                         "this iPod does not take workouts: its Sports service keeps no log of "
                         "them");
  }
}

void SessionWorkoutWriter::RequireStorage(std::size_t largest_piece, std::size_t file_size) {
  unsigned long max_file_size = 0;
  unsigned short max_write_size = 0;
  if (session_.ipod().Command_StorageGetIpodCaps(nullptr, &max_file_size, &max_write_size, nullptr,
                                                 nullptr) == 0) {
    const tagIPOD_EXCHANGE exchange = session_.Last();
    if (!session_.LacksLingo(ipod::IPOD_LINGO_STORAGE)) {
      session_.Fail(exchange, "tell its Storage capabilities");
    }
    throw CommandFailure(kFailed,
                         "this iPod does not take workouts: it has no Storage service to keep "
                         "files with");
  }
  Note("the iPod takes files of " + std::to_string(max_file_size) + " bytes, " +
       std::to_string(max_write_size) + " at a time");
  if (max_write_size < largest_piece) {
    throw CommandFailure(
        kFailed, "this iPod's Storage service takes only " + std::to_string(max_write_size) +
                     " bytes at a time, and this workout needs " + std::to_string(largest_piece));
  }
  if (max_file_size < file_size) {
    throw CommandFailure(kFailed, "this iPod keeps files of up to " + Grouped(max_file_size) +
                                      " bytes, and this workout takes " + Grouped(file_size) +
                                      "; a longer --interval makes it smaller");
  }
}

// An iPod that does not report its free space may still accept a workout.
void SessionWorkoutWriter::RequireSpace() {
  __int64 free_space = 0;
  if (session_.ipod().Command_GetiPodFreeSpace(&free_space) == 0) {
    session_.RequireAnswers();
  } else if (free_space < kLeastFreeSpace) {
    throw CommandFailure(kFailed, "the iPod has only " + Megabytes(free_space) +
                                      " of free space, and a workout needs " +
                                      Megabytes(kLeastFreeSpace) +
                                      "; remove something from it and try again");
  }
}

// A workout that has begun is saved, also after Ctrl-C.
void SessionWorkoutWriter::Start(const WorkoutHeader& header) {
  const ToTheEnd saved(session_.ctrl_c());
  if (session_.ipod().Sports_StartWorkout(
          Wide(header.manufacturer_id).c_str(), Wide(header.manufacturer_name).c_str(),
          Wide(header.model).c_str(), Wide(header.serial_number).c_str(), header.equipment,
          header.weight_kg) == 0) {
    Fail(RefusedOr("did not confirm") + " a file for the workout");
  }
  NoteOpened(File().handle);
  const std::size_t failed = File().failed_writes;
  if (failed != 0) Fail("did not take " + Counted(failed, "line") + " of the workout's header");
  NoteHeader();
}

void SessionWorkoutWriter::Write(const Recording& recording, const Interval& interval) {
  const ToTheEnd saved(session_.ctrl_c());
  const Reading& reading = interval.reading;
  const int written = session_.ipod().Sports_IntervalWorkout(
      interval.event, reading.seconds, reading.kcal, reading.distance, recording.distance_type,
      reading.speed, recording.speed_type, reading.incline, reading.bpm, reading.level);
  if (written == 0) {
    Fail(RefusedOr("did not confirm") + " the interval at " +
         Clock(static_cast<std::uint64_t>(reading.seconds)));
  }
  NoteInterval(reading.seconds);
}

void SessionWorkoutWriter::Finish(const Recording& recording, const Summary& summary) {
  const ToTheEnd saved(session_.ctrl_c());
  const bool closed = session_.ipod().Sports_FinishWorkout(
                          summary.seconds, summary.kcal, summary.distance, recording.distance_type,
                          summary.speed, recording.speed_type, summary.bpm) != 0;
  if (closed) NoteClosed();
  // Nothing failed before: the first failure ends a workout.
  if (File().failed_writes != 0) Fail("did not take the workout's summary");
  NoteSummary();
  if (!closed) Fail(RefusedOr("did not confirm") + " the end of the workout's file");
}

// What the iPod did to the command sent last.
std::string SessionWorkoutWriter::RefusedOr(const char* otherwise) {
  return session_.WasRefused() ? "refused" : otherwise;
}

tagIPOD_WORKOUT_FILE SessionWorkoutWriter::File() {
  tagIPOD_WORKOUT_FILE file = {};
  session_.ipod().GetWorkoutFile(&file);
  return file;
}

std::size_t SessionWorkoutWriter::Written() { return File().write_offset; }

bool SessionWorkoutWriter::Answers() { return session_.Answers(); }

}  // namespace ipodctl
