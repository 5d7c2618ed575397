// SPDX-License-Identifier: MIT
// The names of protocol mistakes.

#include "mistakes.h"

namespace ipodsim {

const char* MistakeName(MistakeKind kind) {
  switch (kind) {
    case MistakeKind::kBadChecksum:
      return "bad checksum";
    case MistakeKind::kTruncatedFrame:
      return "truncated frame";
    case MistakeKind::kStrayBytes:
      return "stray bytes";
    case MistakeKind::kFrameWithoutCommand:
      return "frame without command";
    case MistakeKind::kUnknownCommand:
      return "unknown command";
    case MistakeKind::kWrongPayloadSize:
      return "wrong payload size";
    case MistakeKind::kBadParameter:
      return "bad parameter";
    case MistakeKind::kIndexOutOfRange:
      return "index out of range";
    case MistakeKind::kCommandBeforeIdentification:
      return "command before identification";
    case MistakeKind::kLingoNotAnnounced:
      return "lingo not announced";
    case MistakeKind::kWrongMode:
      return "command outside its mode";
    case MistakeKind::kCommandBeforeAnswer:
      return "command before an answer";
    case MistakeKind::kCommandDuringStream:
      return "command during a record stream";
    case MistakeKind::kTokensOutsideIdentification:
      return "tokens outside identification";
    case MistakeKind::kBadTokenLayout:
      return "bad token layout";
    case MistakeKind::kWrongTokenCount:
      return "wrong token count";
    case MistakeKind::kDuplicateToken:
      return "duplicate token";
    case MistakeKind::kMissingToken:
      return "missing token";
    case MistakeKind::kIdentifierMissing:
      return "identifier missing";
    case MistakeKind::kIdentifierNotStepping:
      return "identifier not stepping";
    case MistakeKind::kIdentifierNotEchoed:
      return "identifier not echoed";
    case MistakeKind::kUnaskedAnswer:
      return "unasked answer";
    case MistakeKind::kWrongAnswer:
      return "wrong answer";
    case MistakeKind::kMissingAnswer:
      return "missing answer";
    case MistakeKind::kServiceNotOffered:
      return "service not offered";
    case MistakeKind::kUnknownHandle:
      return "unknown file handle";
    case MistakeKind::kGapInFile:
      return "gap in a file";
    case MistakeKind::kOverlapInFile:
      return "overlap in a file";
    case MistakeKind::kWriteTooLarge:
      return "write too large";
    case MistakeKind::kFileTooLarge:
      return "file too large";
    case MistakeKind::kFileLeftOpen:
      return "file left open";
    case MistakeKind::kUnpreparedWorkout:
      return "unprepared workout";
    case MistakeKind::kBadWorkoutDocument:
      return "bad workout document";
  }
  return "mistake";
}

}  // namespace ipodsim
