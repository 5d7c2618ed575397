// SPDX-License-Identifier: MIT
#include "scenarios.h"

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"

namespace test {

namespace {

using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::World;

using Session = std::function<bool(World&, CIpodComm&)>;

// With a session that is open, from its construction to the end of its read thread.
bool WithSession(World& world, const Session& act) {
  bool worked = false;
  {
    CIpodComm session;
    world.Advance(2 * kSecond);
    worked = session.Open() == 0 && act(world, session);
    session.Close();
    world.Advance(2 * kSecond);
  }
  return worked;
}

bool Identify(CIpodComm& session, int with_tokens, tagIPOD_IDENTIFY_RESULT expected) {
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  session.SetIDPSEnable(with_tokens);
  return session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr) != 0 && how == expected;
}

bool IdentifyByTokens(CIpodComm& session) {
  return Identify(session, 1, IPOD_IDENTIFY_RESULT_IDPS);
}

bool Browse(CIpodComm& session) {
  unsigned long artists = 0;
  if (session.Command_EnterRemoteUIMode() == 0 || session.SelectTop(2, &artists, 0) == 0) {
    return false;
  }
  session.Command_RetrieveCategorizedDatabaseRecords(0, 20, 2);
  wchar_t name[64] = {};
  unsigned names = 0;
  while (names < 20 && session.GetNextCategorizedRecord(name, 64) == 1) ++names;
  return names == 20;
}

bool PlayAndFollow(World& world, CIpodComm& session) {
  session.SetNotification(0x0000000F);
  session.SelectTop(5, nullptr, 0);
  const bool playing = session.Select(5, 3UL) == 1;
  world.Advance(4 * kSecond);
  tagIPOD_PLAY_STATUS status = {};
  session.GetPlayStatus(&status);
  return playing && status.position != 0;
}

bool ReadAndSetPreferences(CIpodComm& session) {
  constexpr unsigned char kPreferences[] = {0x00, 0x03, 0x08};
  unsigned char setting = 0;
  for (const unsigned char preference : kPreferences) {
    if (session.Command_GetPreference(preference, &setting) == 0) return false;
  }
  return session.Command_SetPreference(0x03, 1) == 1;
}

bool LogWorkout(World& world, CIpodComm& session) {
  if (session.Sports_StartWorkout(L"ACME", L"Acme", L"T9", L"1", IPOD_EQUIPMENT_TYPE_TREADMILL,
                                  70.5) == 0) {
    return false;
  }
  for (int second = 0; second < 5; ++second) {
    if (session.Sports_IntervalWorkout(
            second == 0 ? IPOD_INTERVAL_TYPE_START : IPOD_INTERVAL_TYPE_CONTINUE, second,
            second * 0.125, second * 0.003, IPOD_DISTANCE_TYPE_KM, 330, IPOD_SPEED_TYPE_PACE, 1.5,
            140, 6) == 0) {
      return false;
    }
    world.Advance(kSecond);
  }
  return session.Sports_FinishWorkout(5, 0.6, 0.02, IPOD_DISTANCE_TYPE_KM, 330,
                                      IPOD_SPEED_TYPE_PACE, 140) == 1;
}

using Legacy = std::function<bool(ipod&)>;

bool WithLegacy(World& world, const Legacy& act) {
  ipod docked;
  const bool worked = docked.openport() == 1 && act(docked);
  docked.closeport();
  world.Advance(kSecond);
  return worked;
}

bool LegacyIdentify(ipod& docked) {
  wchar_t text[256] = {};
  return docked.command_identify() == 1 && docked.getipodname(text) == 1 &&
         docked.getipodsoftwareversion(text, 256) == 1 && docked.getipodmodelnum(text) == 1;
}

bool LegacyBrowse(ipod& docked) {
  unsigned long count = 0;
  wchar_t name[256] = {};
  if (docked.command_identify() == 0 || docked.command_enterremoteuimode() == 0) return false;
  if (docked.selecttop(ipod::IPOD_CATEGORY_ALBUM, &count, 1) == 0) return false;
  for (unsigned long i = 0; i < 5; ++i) docked.getnextcategorizeddbrecord(name, 256, i);
  return count > 5 && name[0] != L'\0';
}

bool LegacySelfTest(World& world) {
  ipod docked;
  wchar_t title[256] = {};
  wchar_t detail[256] = {};
  bool passed = docked.startregressiontest(detail) == 1;
  for (int more = 1; more != 0;) {
    int result = 0;
    more = docked.nextregressiontest(title, &result, detail);
    passed = passed && result == 1;
  }
  world.Advance(kSecond);
  return passed;
}

bool LegacyWorkout(ipod& docked) {
  wchar_t manufacturer_id[] = L"0042";
  wchar_t ignored[] = L"not written";
  wchar_t model[] = L"B7";
  wchar_t serial_number[] = L"123-4";
  wchar_t gym_name[] = L"Nord";
  wchar_t gym_location[] = L"Hall 2";
  return docked.startworkout(ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE, manufacturer_id, ignored, model,
                             serial_number, gym_name, gym_location, 72.5F) == 1 &&
         docked.intervalworkout(ipod::IPOD_SPORTS_INTERVAL_TYPE_START, 0, 0, 0, 0, 0, 0, 0, 71, 0,
                                3) == 1;
}

}  // namespace

const std::vector<Scenario>& Scenarios() {
  const auto session = [](const Session& act) {
    return [act](World& world) { return WithSession(world, act); };
  };
  const auto legacy = [](const Legacy& act) {
    return [act](World& world) { return WithLegacy(world, act); };
  };
  static const std::vector<Scenario> scenarios = {
      {"identify_by_tokens", session([](World&, CIpodComm& it) { return IdentifyByTokens(it); })},
      {"identify_by_lingoes",
       session([](World&, CIpodComm& it) { return Identify(it, 0, IPOD_IDENTIFY_RESULT_LINGOS); })},
      {"browse", session([](World&, CIpodComm& it) { return IdentifyByTokens(it) && Browse(it); })},
      {"play_and_follow", session([](World& world, CIpodComm& it) {
         return IdentifyByTokens(it) && it.Command_EnterRemoteUIMode() != 0 &&
                PlayAndFollow(world, it);
       })},
      {"preferences", session([](World&, CIpodComm& it) {
         return Identify(it, 0, IPOD_IDENTIFY_RESULT_LINGOS) && ReadAndSetPreferences(it);
       })},
      {"workout", session([](World& world, CIpodComm& it) {
         return IdentifyByTokens(it) && LogWorkout(world, it);
       })},
      {"silent_ipod", session([](World&, CIpodComm& it) {
         tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_LINGOS;
         return it.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr) == 0;
       })},
      {"legacy_identify", legacy(LegacyIdentify)},
      {"legacy_browse", legacy(LegacyBrowse)},
      {"legacy_self_test", LegacySelfTest},
      {"legacy_workout", legacy(LegacyWorkout)},
  };
  return scenarios;
}

}  // namespace test
