// SPDX-License-Identifier: MIT
// A display text is shown as it changes, by a thread that only watches its memory.
#include "ipod/display_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <cwchar>
#include <mutex>

using ::testing::ElementsAre;

namespace {

TEST(LiveText, IsShownOnceForEachChange) {
  std::mutex lock;
  std::condition_variable changed;
  std::vector<std::string> shown;
  const ipodctl::LiveText text([&](const std::string& now) {
    const std::lock_guard<std::mutex> guard(lock);
    shown.push_back(now);
    changed.notify_one();
  });
  const std::vector<const wchar_t*> written = {L"Getting Ipod Name", L"Zo\u00EB"};
  for (std::size_t i = 0; i < written.size(); ++i) {
    std::wcscpy(text.buffer(), written[i]);
    std::unique_lock<std::mutex> guard(lock);
    changed.wait(guard, [&] { return shown.size() > i; });
  }
  EXPECT_EQ(text.text(), "Zoë");
  EXPECT_THAT(shown, ElementsAre("Getting Ipod Name", "Zoë"));
}

}  // namespace
