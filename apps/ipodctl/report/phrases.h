// SPDX-License-Identifier: MIT
// Every text of a page, in every language that pages are made in.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ipodctl {

enum class Language { kEnglish, kGerman, kFrench, kSpanish };
constexpr std::size_t kLanguages = 4;

/// In the order of Language: "en", "de", "fr", "es".
const std::vector<std::string>& LanguageCodes();

/// {1}, {2} and so on in a text stand for what is filled in.
enum class Phrase {
  // Workouts by their equipment, and the equipment.
  kWorkout,
  kTreadmillWorkout,
  kEllipticalWorkout,
  kStepperWorkout,
  kBikeWorkout,
  kOtherWorkout,
  kTreadmill,
  kElliptical,
  kStepper,
  kBike,
  kOther,
  // Figures.
  kSummary,
  kTime,
  kPausedFor,
  kDistance,
  kClimb,
  kEnergy,
  kPace,
  kSpeed,
  kSteps,
  kCadence,
  kHeartRate,
  kInclination,
  kAverage,
  kHighestToo,
  kAverageOf,
  kAverageAndHighestOf,
  kHighestOf,
  kInAllOf,
  kFromIntervals,
  kNoFigures,
  // Units.
  kKilometres,
  kMiles,
  kFloors,
  kKilocalories,
  kPerMinute,
  kRevolutionsPerMinute,
  kBeatsPerMinute,
  kMinutesPerKilometre,
  kMinutesPerMile,
  kKilometresPerHour,
  kMilesPerHour,
  kPercent,
  kKilograms,
  kPounds,
  // The chart.
  kOverTime,
  kChartTitle,
  kBetween,
  kTimeFromTo,
  kPausedFromTo,
  kPausedTimes,
  kTimeMinutes,
  kTimeHours,
  kPaused,
  kNothingToDraw,
  kSlowPace,
  kSpeedFromDistance,
  kReadAt,
  kNoReading,
  // Splits and heart-rate zones.
  kSplits,
  kZones,
  kZone,
  kBelowZones,
  kVeryLight,
  kLight,
  kModerate,
  kHard,
  kMaximum,
  kShare,
  kMaximumHeartRate,
  // What is wrong with the document.
  kCutShort,
  kMalformed,
  kShowsWhatIsBefore,
  kShowsAndComputes,
  kNoSummary,
  kComputed,
  kValueLeftOut,
  kValuesLeftOut,
  kNoUsableNumber,
  // Equipment, user and iPod.
  kEquipment,
  kType,
  kManufacturer,
  kManufacturerId,
  kModel,
  kSerialNumber,
  kGym,
  kPlace,
  kWeight,
  kIpod,
  kIpodSoftware,
  kIpodSerialNumber,
  kMadeFrom,
  kInterval,
  kIntervals,
  // The overview.
  kWorkouts,
  kOneWorkout,
  kManyWorkouts,
  kInAll,
  kByWeek,
  kWeek,
  kWeekOf,
  kDayToDay,
  kDate,
  kDatesAreOfFiles,
  kFileLeftOut,
  kFilesLeftOut,
  kDamaged,
  kAllWorkouts,
  kMadeFromFolder,
  // Dates.
  kDayMonthYear,
  kFirstDay,
  kJanuary,
  kFebruary,
  kMarch,
  kApril,
  kMay,
  kJune,
  kJuly,
  kAugust,
  kSeptember,
  kOctober,
  kNovember,
  kDecember,
  kCount  // how many there are
};

/// Null where nobody has translated it yet.
const char* PhraseText(Phrase phrase, Language language);

}  // namespace ipodctl
