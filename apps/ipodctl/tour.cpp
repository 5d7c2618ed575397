// SPDX-License-Identifier: MIT
// Performs the steps, and fails at the first that has not the expected effect.
#include "tour.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/progress.h"
#include "console/text.h"
#include "ipod/identify_evidence.h"
#include "ipod/info.h"
#include "library/categories.h"
#include "library/session_library.h"
#include "library/walk.h"
#include "playing/control.h"
#include "playing/follower.h"
#include "playing/modes.h"
#include "playing/now.h"
#include "playing/playback_view.h"

namespace ipodctl {

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned long kMostNames = 24;  // read of each list; the line transfers some 30 a second
constexpr std::size_t kShownNames = 5;
constexpr unsigned kFollowMs = 5000;
constexpr unsigned kPlainLineEverySeconds = 1;

class Tour {
 public:
  explicit Tour(const Context& context) : context_(context), output_(context.output) {}

  void Run();

 private:
  void Step(const std::string& name, const std::string& title);
  void ShowDevice(Session& session);
  void Browse(MediaLibrary& library, LibraryWalk& walk);
  std::vector<std::string> ShowList(MediaLibrary& library, const LibraryWalk& walk);
  void Play(Session& session, LibraryWalk& walk);
  void Control(Session& session);
  void Show(Session& session, NowPlaying now);
  void Shuffle(Session& session);

  const Context& context_;
  Output& output_;
  int step_ = 0;
};

void Tour::Run() {
  if (context_.options.simulation) {
    output_.Line("A simulated iPod (" + context_.options.simulation->profile + ") is docked on " +
                 context_.dock.device() + ".");
  } else {
    output_.Line("The dock is on " + context_.dock.device() + ".");
  }
  Step("identify", "Wake the iPod and introduce ourselves");
  Session session(context_.options, context_.dock);
  session.Identify();
  output_.Line("  The iPod accepted us by " + session.IdentifiedBy() + ".");
  output_.Object({{"identified_by", session.IdentifiedBy()}});
  ShowDevice(session);
  session.EnterRemoteUi();
  SessionLibrary library(session);
  LibraryWalk walk(library, context_.options.hierarchy);
  Browse(library, walk);
  Play(session, walk);
  Control(session);
  Shuffle(session);
  Step("close", "Close");
  session.Close();
  output_.Line("  The port is closed.");
  output_.Object(Json::object());
}

// Every object until the next step bears the name.
void Tour::Step(const std::string& name, const std::string& title) {
  StopIfInterrupted();
  output_.BeginStep(name);
  output_.Line("");
  output_.Line(output_.Bold(std::to_string(++step_) + ". " + title));
}

void Tour::ShowDevice(Session& session) {
  Step("device", "Ask who it is");
  const DeviceInfo info = ReadDeviceInfo(session);
  output_.Fact("Name", ToldName(info.name));
  output_.Fact("Model", ToldName(info.model));
  output_.Fact("Colour",
               info.color == IPOD_COLOR_NONE ? "unknown" : "number " + std::to_string(info.color));
  output_.Fact("Workouts", WorkoutsText(info));
  for (const LingoVersion& lingo : info.lingoes) {
    if (lingo.version) output_.Fact(lingo.name, VersionText(*lingo.version));
  }
  output_.Object(ToJson(info, context_.dock.device()));
}

// From the artists down to a list of at least two tracks, so that there is one to skip to.
void Tour::Browse(MediaLibrary& library, LibraryWalk& walk) {
  Step("artists", "Browse: artists");
  walk.EnterTop(kArtists);
  const std::vector<std::string> artists = ShowList(library, walk);
  for (unsigned long artist = 0; artist < artists.size(); ++artist) {
    if (artist != 0) walk.EnterTop(kArtists);
    walk.EnterRecord(artist, kTracks);
    if (walk.count() < 2) continue;
    walk.EnterTop(kArtists);
    Step("albums", "Browse: albums of " + Printable(artists[artist]));
    walk.EnterRecord(artist, kAlbums);
    const std::vector<std::string> albums = ShowList(library, walk);
    if (albums.empty()) continue;
    Step("tracks", "Browse: tracks of " + Printable(albums.front()));
    walk.EnterRecord(0UL, kTracks);
    ShowList(library, walk);
    return;
  }
  throw CommandFailure(kFailed, "the tour needs an artist with two tracks, and this iPod has none");
}

std::vector<std::string> Tour::ShowList(MediaLibrary& library, const LibraryWalk& walk) {
  const Category& category = CategoryByCode(walk.category());
  const unsigned long count = std::min(walk.count(), kMostNames);
  std::vector<std::string> names;
  {
    ProgressBar bar(std::string("  Reading ") + category.name, count);
    library.ReadNames(walk.category(), 0, count,
                      [&](unsigned long, const std::optional<std::string>& name) {
                        names.push_back(name.value_or(""));
                        bar.Hide();
                        if (names.size() <= kShownNames)
                          output_.Line("  " + ShownName(names.back()));
                        bar.Update(names.size());
                        return true;
                      });
  }
  if (walk.count() > kShownNames) {
    output_.Line(output_.Dim("  ... " + Counted(walk.count(), category.singular) + " in all"));
  }
  output_.Object({{"total", walk.count()}, {"names", names}});
  return names;
}

void Tour::Play(Session& session, LibraryWalk& walk) {
  Step("play", "Play the first track, and follow it by notifications");
  PlayListed(session, {0, walk.NameOf(0)});
  PlaybackView view(output_, kPlainLineEverySeconds);
  unsigned positions = 0;
  Follower follower(session, [&](const char* event, const NowPlaying& playing) {
    if (event == std::string("position")) ++positions;
    view.Show(event, playing);
  });
  follower.Run(kFollowMs);
  session.Require(positions >= 2, "tell how the track goes on");
}

void Tour::Control(Session& session) {
  Step("pause", "Pause");
  Show(session, PressFor(session, kPauseButton, kPaused, "pause"));
  Step("next", "Skip to the next track");
  PressFor(session, kPlayButton, kPlaying, "play on");
  Show(session, Skip(session, true));
}

void Tour::Show(Session& session, NowPlaying now) {
  ReadTexts(session, &now);
  ShowNowPlaying(output_, now);
}

void Tour::Shuffle(Session& session) {
  Step("shuffle", "Shuffle");
  const std::string before = ReadShuffle(session);
  SetShuffle(session, "tracks", false);
  const std::string now = ReadShuffle(session);
  output_.Line("  Shuffle was " + before + " and is now " + now + ".");
  output_.Object({{"shuffle", now}, {"before", before}});
  session.Require(now == "tracks", "shuffle");
  SetShuffle(session, before, false);
  output_.Line("  It is back to " + ReadShuffle(session) + ".");
}

}  // namespace

void RunTour(const Context& context) { Tour(context).Run(); }

}  // namespace ipodctl
