// SPDX-License-Identifier: MIT
// What an accessory can do wrong, each with a name that a report and a test can use.

#pragma once

#include <string>

#include "simulator/base/clock.h"

namespace ipodsim {

enum class MistakeKind {
  kBadChecksum,
  kTruncatedFrame,
  kStrayBytes,
  kFrameWithoutCommand,
  kUnknownCommand,
  kWrongPayloadSize,
  kBadParameter,
  kIndexOutOfRange,
  kCommandBeforeIdentification,
  kLingoNotAnnounced,
  kWrongMode,
  kCommandBeforeAnswer,
  kCommandDuringStream,
  kTokensOutsideIdentification,
  kBadTokenLayout,
  kWrongTokenCount,
  kDuplicateToken,
  kMissingToken,
  kIdentifierMissing,
  kIdentifierNotStepping,
  kIdentifierNotEchoed,
  kUnaskedAnswer,
  kWrongAnswer,
  kMissingAnswer,
  kServiceNotOffered,
  kUnknownHandle,
  kGapInFile,
  kOverlapInFile,
  kWriteTooLarge,
  kFileTooLarge,
  kFileLeftOpen,
  kUnpreparedWorkout,
  kBadWorkoutDocument,
};

/// Lower-case words, such as "bad checksum".
const char* MistakeName(MistakeKind kind);

struct Mistake {
  MistakeKind kind;
  std::string name;
  std::string detail;  // one sentence without its full stop
  Microseconds at;
};

}  // namespace ipodsim
