// SPDX-License-Identifier: MIT
// The platform's conversions between UTF-8 and wide text.
#include <cstring>
#include <cwchar>

#include "platform/common/utf8.h"
#include "platform/services.h"

namespace {

using ipodcomm::platform::EncodeUtf8;
using ipodcomm::platform::kMaxUtf8Bytes;
using ipodcomm::platform::PopUtf8Character;

// Collects converted text in the caller's buffer, or only counts it when the buffer has no room at
// all. Once something did not fit, nothing more is added: text is cut, never thinned out.
template <class Character>
class Output {
 public:
  Output(Character* destination, std::size_t capacity)
      : destination_(destination), capacity_(capacity) {}

  void Add(const Character* text, std::size_t length) {
    const bool counting = capacity_ == 0;
    if (!counting && (cut_ || length > capacity_ - used_)) {
      cut_ = true;
      return;
    }
    if (!counting) std::memcpy(destination_ + used_, text, length * sizeof(Character));
    last_length_ = length;
    used_ += length;
  }

  // Ends the text in its buffer. Text that was cut gives up its last character for the terminator
  // when it fills the buffer; complete text is terminated where there is room.
  int Finish() {
    if (capacity_ == 0) return static_cast<int>(used_);
    if (cut_ && used_ == capacity_) used_ -= last_length_;
    if (used_ < capacity_) destination_[used_] = 0;
    if (!cut_) return static_cast<int>(used_);
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }

 private:
  Character* destination_;
  std::size_t capacity_;
  std::size_t used_ = 0;
  std::size_t last_length_ = 0;
  bool cut_ = false;
};

bool CheckArguments(UINT code_page, DWORD flags, const void* source, int source_length,
                    const void* destination, int capacity) {
  const bool usable = code_page == CP_UTF8 && flags == 0 && source != nullptr &&
                      source_length != 0 && source_length >= -1 && capacity >= 0 &&
                      (destination != nullptr || capacity == 0);
  if (!usable) SetLastError(ERROR_INVALID_PARAMETER);
  return usable;
}

}  // namespace

int MultiByteToWideChar(UINT code_page, DWORD flags, const char* source, int source_bytes,
                        wchar_t* destination, int capacity) {
  if (!CheckArguments(code_page, flags, source, source_bytes, destination, capacity)) return 0;
  std::string_view rest(source, source_bytes == -1 ? std::strlen(source) + 1
                                                   : static_cast<std::size_t>(source_bytes));
  Output output(destination, static_cast<std::size_t>(capacity));
  while (!rest.empty()) {
    const auto character = static_cast<wchar_t>(PopUtf8Character(rest));
    output.Add(&character, 1);
  }
  return output.Finish();
}

int WideCharToMultiByte(UINT code_page, DWORD flags, const wchar_t* source, int source_characters,
                        char* destination, int capacity, const char* default_character,
                        BOOL* used_default) {
  if (!CheckArguments(code_page, flags, source, source_characters, destination, capacity)) return 0;
  // UTF-8 can express everything, so it has no use for a default character and refuses one.
  if (default_character != nullptr || used_default != nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const std::size_t length = source_characters == -1 ? std::wcslen(source) + 1
                                                     : static_cast<std::size_t>(source_characters);
  Output output(destination, static_cast<std::size_t>(capacity));
  for (std::size_t i = 0; i < length; ++i) {
    char encoded[kMaxUtf8Bytes];
    output.Add(encoded, EncodeUtf8(static_cast<char32_t>(source[i]), encoded));
  }
  return output.Finish();
}
