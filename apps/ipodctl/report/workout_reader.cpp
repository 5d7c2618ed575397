// SPDX-License-Identifier: MIT
// Feeds a workout document to the parser, and says where and why reading stops.
#include "report/workout_reader.h"

#include <expat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>

#include "console/failure.h"
#include "console/system.h"
#include "report/document_builder.h"

namespace ipodctl {

namespace {

constexpr std::size_t kPiece = 1 << 16;  // bytes

class Reader {
 public:
  Reader();

  // Parses the next piece. False when no more is wanted.
  bool Feed(std::string_view piece, bool last);
  WorkoutDocument Finish();

 private:
  static void OnStart(void* self, const XML_Char* name, const XML_Char** attributes);
  static void OnEnd(void* self, const XML_Char* name);
  static void OnText(void* self, const XML_Char* text, int length);
  static void OnEntity(void* self, const XML_Char* name, int is_parameter, const XML_Char* value,
                       int length, const XML_Char* base, const XML_Char* system_id,
                       const XML_Char* public_id, const XML_Char* notation);

  void Stop(const std::string& why);
  void SetProblem(bool cut_short, const std::string& what);
  std::size_t Unparsed() const;

  std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser_{XML_ParserCreate(nullptr),
                                                                  XML_ParserFree};
  DocumentBuilder builder_;
  std::optional<DocumentProblem> problem_;
  std::size_t fed_ = 0;  // bytes
};

Reader::Reader() {
  if (parser_ == nullptr) throw std::bad_alloc();
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser_.get(), OnText);
  // Without a handler for references to other files, none is ever opened.
  XML_SetEntityDeclHandler(parser_.get(), OnEntity);
}

bool EndedEarly(XML_Error error) {
  return error == XML_ERROR_NO_ELEMENTS || error == XML_ERROR_UNCLOSED_TOKEN ||
         error == XML_ERROR_PARTIAL_CHAR || error == XML_ERROR_UNCLOSED_CDATA_SECTION;
}

bool Reader::Feed(std::string_view piece, bool last) {
  const XML_Status status =
      XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), last ? 1 : 0);
  fed_ += piece.size();
  if (status != XML_STATUS_OK) {
    const XML_Error error = XML_GetErrorCode(parser_.get());
    // A stop of our own has its reason already.
    if (!problem_) SetProblem(last && EndedEarly(error), XML_ErrorString(error));
    return false;
  }
  // What is not parsed yet is scanned again with every piece, so it must stay short.
  if (!last && Unparsed() > kLongestTag) {
    SetProblem(false, "a tag that does not end");
    return false;
  }
  return true;
}

std::size_t Reader::Unparsed() const {
  const XML_Index parsed = XML_GetCurrentByteIndex(parser_.get());
  return parsed < 0 ? fed_ : fed_ - std::min(fed_, static_cast<std::size_t>(parsed));
}

void Reader::SetProblem(bool cut_short, const std::string& what) {
  problem_ = DocumentProblem{cut_short, XML_GetCurrentLineNumber(parser_.get()),
                             XML_GetCurrentColumnNumber(parser_.get()) + 1, what};
}

void Reader::Stop(const std::string& why) {
  if (!problem_) SetProblem(false, why);
  XML_StopParser(parser_.get(), XML_FALSE);
}

WorkoutDocument Reader::Finish() {
  WorkoutDocument document = builder_.Finish();
  document.problem = problem_;
  return document;
}

void Reader::OnStart(void* self, const XML_Char* name, const XML_Char** /*attributes*/) {
  auto* reader = static_cast<Reader*>(self);
  if (reader->builder_.StartElement(name)) return;
  reader->Stop(reader->builder_.document().is_workout ? "more intervals than any workout has"
                                                      : "its first element is not gymData");
}

void Reader::OnEnd(void* self, const XML_Char* name) {
  static_cast<Reader*>(self)->builder_.EndElement(name);
}

void Reader::OnText(void* self, const XML_Char* text, int length) {
  static_cast<Reader*>(self)->builder_.Text(text, static_cast<std::size_t>(length));
}

// Nested entities let a small file fill the memory, and no console declares any.
void Reader::OnEntity(void* self, const XML_Char* /*name*/, int /*is_parameter*/,
                      const XML_Char* /*value*/, int /*length*/, const XML_Char* /*base*/,
                      const XML_Char* /*system_id*/, const XML_Char* /*public_id*/,
                      const XML_Char* /*notation*/) {
  static_cast<Reader*>(self)->Stop("an entity declaration");
}

[[noreturn]] void CannotRead(const std::string& path, const std::string& why) {
  throw CommandFailure(kInputFile, "cannot read " + path + ": " + why);
}

void RequireWorkout(const WorkoutDocument& document, const std::string& path) {
  if (document.is_workout) return;
  std::string why;
  if (document.problem) {
    why = document.problem->cut_short ? "it ends before the first element" : document.problem->what;
    why += " (line " + std::to_string(document.problem->line) + ", column " +
           std::to_string(document.problem->column) + ")";
  }
  throw CommandFailure(kInputFile, path + " is not a workout document: " + why);
}

WorkoutDocument ReadFrom(std::istream& stream, const std::string& path) {
  if (stream.peek() == std::istream::traits_type::eof()) {
    throw CommandFailure(kInputFile, path + " is not a workout document: it is empty");
  }
  Reader reader;
  std::string piece(kPiece, '\0');
  bool wanted = true;
  while (wanted) {
    stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    if (stream.bad()) CannotRead(path, "the disk or connection that holds it fails");
    const auto size = static_cast<std::size_t>(stream.gcount());
    wanted = reader.Feed(std::string_view(piece).substr(0, size), stream.eof()) && !stream.eof();
  }
  WorkoutDocument document = reader.Finish();
  RequireWorkout(document, path);
  return document;
}

}  // namespace

WorkoutDocument ParseWorkoutDocument(std::string_view text) {
  Reader reader;
  bool wanted = true;
  while (wanted) {
    const std::string_view piece = text.substr(0, kPiece);
    text.remove_prefix(piece.size());
    wanted = reader.Feed(piece, text.empty()) && !text.empty();
  }
  return reader.Finish();
}

WorkoutDocument ReadWorkoutDocument(const std::string& path) {
  if (path == "-") {
    ReadInputAsBytes();
    return ReadFrom(std::cin, "standard input");
  }
  const std::filesystem::path file = std::filesystem::u8path(path);
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) CannotRead(path, "it is a folder");
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) CannotRead(path, errno != 0 ? std::strerror(errno) : "it does not open");
  return ReadFrom(stream, path);
}

}  // namespace ipodctl
