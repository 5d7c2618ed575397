// SPDX-License-Identifier: MIT
// Renders playback events.
#include "playing/playback_view.h"

#include <nlohmann/json.hpp>
#include <string>

#include "console/text.h"

namespace ipodctl {

void PlaybackView::Show(const char* event, const NowPlaying& now) {
  nlohmann::ordered_json json = {{"event", event}};
  json.update(ToJson(now));
  output_.Object(json);
  if (output_.json()) return;
  if (event != std::string("position")) {
    line_.Hide();
    ShowNowPlaying(output_, now);
    plain_position_s_ = now.position_ms / 1000;
  }
  ShowPosition(now);
}

void PlaybackView::ShowPosition(const NowPlaying& now) {
  if (!now.index) return;
  if (line_.visible()) {
    line_.ShowBar("  " + Padded(StateName(now.state), 8), now.position_ms, now.length_ms,
                  Clock(now.position_ms / 1000) + "/" + Clock(now.length_ms / 1000));
    return;
  }
  const std::uint64_t position_s = now.position_ms / 1000;
  if (position_s < plain_position_s_ + plain_every_s_) return;
  plain_position_s_ = position_s;
  output_.Line("         " + Progress(now));
}

}  // namespace ipodctl
