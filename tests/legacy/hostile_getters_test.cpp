// SPDX-License-Identifier: MIT
// Replies that no honest iPod sends, to every getter and helper: nothing is written outside the
// host's buffers, which the sanitizers watch, and the result is still 0 or 1.
#include <functional>
#include <memory>

#include "support/legacy_test.h"
#include "support/properties.h"

namespace {

#if IPODCOMM_HAS_RAPIDCHECK

using test::Bytes;
using test::LegacyTest;

// A buffer on the heap of exactly the size that the host promises.
template <class Element, std::size_t kSize>
struct Exactly {
  std::unique_ptr<Element[]> elements = std::make_unique<Element[]>(kSize);
  operator Element*() const { return elements.get(); }
};

using Operation = std::function<int(ipod&)>;

template <std::size_t kSize>
Operation Text(int (ipod::*getter)(wchar_t*)) {
  return [getter](ipod& dock) { return (dock.*getter)(Exactly<wchar_t, kSize>()); };
}

// Each with the commands of the replies that it awaits.
struct Tried {
  Operation operation;
  std::vector<std::uint8_t> replies;
};

std::vector<Tried> TextGetters() {
  return {
      {[](ipod& dock) { return dock.getipodsoftwareversion(Exactly<wchar_t, 12>(), 12); }, {0x0A}},
      {Text<10>(&ipod::getipodmodelnum), {0x0E}},
      {[](ipod& dock) { return dock.getipodlingoversion(Exactly<wchar_t, 10>(), 0); }, {0x10}},
      {Text<250>(&ipod::getipodname), {0x08}},
      {Text<250>(&ipod::getipodserailnum), {0x0C}},
      {Text<250>(&ipod::getipodmodelname), {0x0E}},
      {Text<25>(&ipod::getipodpreferencevideoutconnection), {0x2A}},
      {Text<25>(&ipod::getipodpreferencescreenconfiguration), {0x2A}},
      {[](ipod& dock) { return dock.setipodpreferencevidooutsetting(1); }, {0x02}},
      {Text<30>(&ipod::getipodplayerstate), {0x1D}},
      {[](ipod& dock) { return *dock.getipodtracklength() != 0 ? 1 : 7; }, {0x1D}},
      {[](ipod& dock) { return *dock.getipodtrackposition() != 0 ? 1 : 7; }, {0x1D}},
      {Text<250>(&ipod::getindexedplayingtracktitle), {0x1F, 0x21}},
      {Text<25>(&ipod::getipodcurrentplayingtrackchaptername), {0x08}}};
}

std::vector<Tried> Helpers() {
  return {
      {[](ipod& dock) {
         return dock.GetIpodPlayerStateNumEx(
             Exactly<unsigned char, 1>(), Exactly<unsigned long, 1>(), Exactly<unsigned long, 1>());
       },
       {0x1D}},
      {[](ipod& dock) { return dock.iscurrentvideo(Exactly<int, 1>()); }, {0x1F, 0x13}},
      {[](ipod& dock) { return dock.pausestop(); }, {0x1D, 0x01}},
      {[](ipod& dock) { return dock.selecttop(2, Exactly<unsigned long, 1>(), 0); }, {0x01, 0x19}},
      {[](ipod& dock) { return dock.select(5, 3, Exactly<unsigned long, 1>()); }, {0x01, 0x19}},
      {[](ipod& dock) { return dock.getnextcategorizeddbrecord(Exactly<wchar_t, 20>(), 20, 3); },
       {0x1B, 0x1B}},
      {[](ipod& dock) { return dock.setmonoimage(); }, {0x34}},
      {[](ipod& dock) {
         return dock.getartworkformats(Exactly<unsigned short, 20>(), Exactly<unsigned char, 1>());
       },
       {0x0F}},
      {[](ipod& dock) {
         return dock.getindexedplayingtrackartworkcount(3, Exactly<unsigned short, 1>());
       },
       {0x0D}},
      {[](ipod& dock) { return dock.gettrackartworktimes(3, 4, Exactly<unsigned long, 1>()); },
       {0x2B}},
      {[](ipod& dock) { return dock.getcurrenttrackartworkdata(4); }, {0x1F, 0x0D, 0x2B, 0x11}}};
}

// A frame with the right checksum and any length byte, small or large, in either command form.
Bytes Frame(std::uint8_t command, const Bytes& payload) {
  const bool extended = *rc::gen::arbitrary<bool>();
  Bytes body = {*rc::gen::element<std::uint8_t>(0, 3, 4, 9)};
  if (extended) body.push_back(0);
  body.push_back(command);
  body.insert(body.end(), payload.begin(), payload.end());
  Bytes frame = {0xFF, 0x55};
  if (*rc::gen::inRange(0, 8) == 0 || body.size() > 255) {
    frame.push_back(0);
    frame.push_back(static_cast<std::uint8_t>(body.size() >> 8));
  }
  frame.push_back(static_cast<std::uint8_t>(body.size()));
  frame.insert(frame.end(), body.begin(), body.end());
  std::uint8_t sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum = static_cast<std::uint8_t>(sum + frame[i]);
  frame.push_back(static_cast<std::uint8_t>(-sum));
  return frame;
}

// Any bytes, often all alike, as walks over zeros and fill values go on longest.
Bytes AnyPayload() {
  const auto length = static_cast<std::size_t>(*rc::gen::inRange(0, 270));
  if (*rc::gen::arbitrary<bool>()) {
    return Bytes(length, *rc::gen::element<std::uint8_t>(0x00, 0x55, 0xFF, 0x41));
  }
  return *rc::gen::container<Bytes>(length, rc::gen::arbitrary<std::uint8_t>());
}

class HostileReplies : public LegacyTest {
 protected:
  void Try(const std::vector<Tried>& tries) {
    for (const Tried& tried : tries) {
      // What is left from the one before would be read instead.
      world_.Advance(200 * test::kMillisecond);
      ipodPeer::Serial(legacy_).purgerx();
      for (const std::uint8_t command : tried.replies) {
        ipod_.Send(Frame(command, AnyPayload()));
        if (*rc::gen::inRange(0, 4) == 0) ipod_.Send(AnyPayload());  // noise
      }
      const int result = tried.operation(legacy_);
      RC_ASSERT(result == 0 || result == 1);
    }
  }
};

RC_GTEST_FIXTURE_PROP(HostileReplies, ToTextGettersStayInsideTheHostsTexts, ()) {
  Try(TextGetters());
}

RC_GTEST_FIXTURE_PROP(HostileReplies, ToHelpersStayInsideTheHostsOutputs, ()) { Try(Helpers()); }

#else

TEST(HostileReplies, ToTextGettersStayInsideTheHostsTexts) { GTEST_SKIP() << test::kNoRapidcheck; }
TEST(HostileReplies, ToHelpersStayInsideTheHostsOutputs) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

}  // namespace
