// SPDX-License-Identifier: MIT
// Watches a display text.
#include "ipod/display_text.h"

#include <chrono>
#include <utility>

namespace ipodctl {

namespace {

constexpr std::size_t kCharacters = DisplayText::kCapacity + 1;
constexpr std::chrono::milliseconds kLookAgain(10);

}  // namespace

LiveText::LiveText(std::function<void(const std::string&)> show)
    : memory_(kCharacters * sizeof(wchar_t)),
      show_(std::move(show)),
      watcher_([this] { Watch(); }) {}

LiveText::~LiveText() {
  ending_ = true;
  watcher_.join();
}

std::string LiveText::text() const { return Utf8(buffer()); }

void LiveText::Watch() {
  std::wstring shown;
  std::wstring seen;
  while (!ending_) {
    // A text that is still being written differs at the next look.
    const std::wstring now = Look();
    if (now == seen && now != shown) {
      shown = now;
      show_(Utf8(shown.c_str()));
    }
    seen = now;
    std::this_thread::sleep_for(kLookAgain);
  }
}

std::wstring LiveText::Look() const {
  const auto* const characters = static_cast<const volatile wchar_t*>(memory_.watched());
  std::wstring text;
  for (std::size_t i = 0; i + 1 < kCharacters && characters[i] != L'\0'; ++i) {
    text.push_back(characters[i]);
  }
  return text;
}

}  // namespace ipodctl
