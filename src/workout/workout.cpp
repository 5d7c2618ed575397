// SPDX-License-Identifier: MIT
// CIpodComm: a workout, logged as a document on the iPod.
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "platform/services.h"
#include "protocol/text.h"
#include "workout/document.h"

// A failing request for the free space does not stop a workout: only a number that is too small.
bool CIpodComm::AcceptsWorkouts() {
  constexpr unsigned short kLeastWriteSize = 128;
  constexpr __int64 kLeastFreeSpace = 0x500000;

  unsigned short caps = 0;
  if (Command_SportsGetIpodCaps(&caps, nullptr) == 0) return false;
  if ((caps & ipod::IPOD_SPORTS_GETIPODCAPS_MASK_GYM) == 0) {
    NKDbgPrintfW(L"Gym caps not supported!\r\n");
    return false;
  }
  unsigned short max_write_size = 0;
  if (Command_StorageGetIpodCaps(nullptr, nullptr, &max_write_size, nullptr, nullptr) == 0) {
    return false;
  }
  if (max_write_size < kLeastWriteSize) {
    NKDbgPrintfW(L"Storage write size too small!\r\n");
    return false;
  }
  __int64 free_space = 0;
  return Command_GetiPodFreeSpace(&free_space) == 0 || free_space >= kLeastFreeSpace;
}

int CIpodComm::Sports_StartWorkout(const wchar_t* manufacturer_id, const wchar_t* manufacturer_name,
                                   const wchar_t* model, const wchar_t* serial_number,
                                   tagIPOD_EQUIPMENT_TYPE equipment, double weight_kg) {
  if (!AcceptsWorkouts()) return 0;
  failed_text_writes_ = 0;
  constexpr unsigned long kOptions = ipod::IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENDDATA |
                                     ipod::IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLIPODINFO |
                                     ipod::IPOD_OPENIPODFEATUREFILE_OPTIONMASK_APPENXMLSIGNATURE;
  // The iPod ends the document when the file is closed; the library never writes its end.
  char end[261];
  const std::size_t length = ipodcomm::Utf8FromText(L"</gymData>", end, sizeof end);
  if (Command_OpeniPodFeatureFile(
          static_cast<unsigned char>(ipod::IPOD_OPENIPODFEATUREFILE_FEATURE_GYMEQUIPMENT), kOptions,
          reinterpret_cast<unsigned char*>(end), static_cast<unsigned long>(length),
          &open_file_handle_) == 0) {
    return 0;
  }
  const ipodcomm::WorkoutHeader header = {manufacturer_id, manufacturer_name, model,
                                          serial_number,   equipment,         weight_kg};
  for (const ipodcomm::HeaderLine& line : ipodcomm::HeaderLines(header)) {
    WriteStorageFileString(line.Whole().data());
  }
  return 1;
}

int CIpodComm::Sports_IntervalWorkout(tagIPOD_INTERVAL_TYPE event, int seconds, double kcal,
                                      double distance, tagIPOD_DISTANCE_TYPE distance_type,
                                      double speed, tagIPOD_SPEED_TYPE speed_type, double incline,
                                      int bpm, int level) {
  const ipodcomm::BlockText block = ipodcomm::IntervalBlock(
      {event, seconds, kcal, distance, distance_type, speed, speed_type, incline, bpm, level});
  return WriteStorageFileString(block.chars);
}

int CIpodComm::Sports_FinishWorkout(int seconds, double kcal, double distance,
                                    tagIPOD_DISTANCE_TYPE distance_type, double speed,
                                    tagIPOD_SPEED_TYPE /*speed_type*/, int bpm) {
  const ipodcomm::BlockText block =
      ipodcomm::SummaryBlock({seconds, kcal, distance, distance_type, speed, bpm});
  WriteStorageFileString(block.chars);
  return Command_CloseiPodFile(open_file_handle_);
}

int CIpodComm::GetWorkoutFile(tagIPOD_WORKOUT_FILE* file) {
  *file = {open_file_handle_, storage_write_offset_, failed_text_writes_};
  return 1;
}
