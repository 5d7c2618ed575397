// SPDX-License-Identifier: MIT
// Passes frames on, and meddles with them.
#include "dock.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <utility>

#include "simulator/protocol/command_table.h"

namespace truth {

namespace {

using ipodsim::Bytes;
using ipodsim::Frame;
using ipodsim::kMillisecond;
using ipodsim::kSecond;

constexpr unsigned kOneIn = 8;
constexpr std::int64_t kSlowness = 300 * kMillisecond;
constexpr std::int64_t kRestartTime = 1500 * kMillisecond;
constexpr std::int64_t kPendingTime = 200 * kMillisecond;
constexpr std::uint8_t kPendingStatus = 6;

// What is said of a request goes out with the identifier that the request has.
Bytes IdentifierOf(const Frame& frame, bool identifiers_on) {
  if (!identifiers_on || frame.data.size() < 2) return {};
  return {frame.data[0], frame.data[1]};
}

bool IsAnswered(const Frame& frame) {
  const ipodsim::CommandRule* rule = ipodsim::FindCommand(frame.lingo, frame.command);
  return rule != nullptr && ipodsim::AckCommand(frame.lingo) != ipodsim::kNoAck &&
         (rule->nature == ipodsim::CommandNature::kRequest ||
          rule->nature == ipodsim::CommandNature::kRequestWithout);
}

bool Identifies(const Frame& frame) {
  return frame.lingo == ipodsim::kGeneral &&
         (frame.command == ipodsim::general::kIdentify ||
          frame.command == ipodsim::general::kIdentifyDeviceLingoes ||
          frame.command == ipodsim::general::kStartIdps);
}

// Whether what is left of the frame may read as another one.
bool DamagesBytes(Meddling meddling) {
  return meddling == Meddling::kDroppedByte || meddling == Meddling::kDoubledByte ||
         meddling == Meddling::kFlippedBit || meddling == Meddling::kBroken ||
         meddling == Meddling::kJunk;
}

// What the iPod says of its own accord: its questions, and its news.
bool IsUnasked(const Frame& frame) {
  constexpr std::pair<std::uint8_t, std::uint16_t> kUnasked[] = {
      {ipodsim::kGeneral, ipodsim::general::kNotifyIpodStateChange},
      {ipodsim::kGeneral, ipodsim::general::kGetAccessoryInfo},
      {ipodsim::kGeneral, ipodsim::general::kIpodNotification},
      {ipodsim::kExtended, ipodsim::extended::kPlayStatusChangeNotification},
      {ipodsim::kSports, ipodsim::sports::kGetDeviceVersion},
      {ipodsim::kSports, ipodsim::sports::kGetDeviceCaps},
      {ipodsim::kStorage, ipodsim::storage::kGetAccessoryCaps}};
  return std::find(std::begin(kUnasked), std::end(kUnasked),
                   std::make_pair(frame.lingo, frame.command)) != std::end(kUnasked);
}

// The refusal that a frame is, if it is one. Identifiers come first where there are any.
std::optional<Refusal> RefusalIn(const Frame& frame) {
  if (frame.command != ipodsim::AckCommand(frame.lingo)) return std::nullopt;
  const std::size_t plain = frame.lingo == ipodsim::kExtended ? 3 : 2;
  const std::size_t at = frame.data.size() == plain + 2 ? 2 : 0;
  if (frame.data.size() < plain) return std::nullopt;
  const std::uint8_t status = frame.data[at];
  if (status == 0 || status == kPendingStatus) return std::nullopt;
  const std::uint16_t command =
      plain == 3 ? ipodsim::Get16(frame.data, at + 1) : frame.data[at + 1];
  return Refusal{0, frame.lingo, command, status};
}

}  // namespace

bool HoldsAnotherFrame(const Bytes& arriving, const std::vector<Bytes>& good) {
  for (std::size_t start = 0; start + 5 < arriving.size(); ++start) {
    if (arriving[start] != 0xFF || arriving[start + 1] != 0x55) continue;
    std::size_t length = arriving[start + 2];
    std::size_t content = start + 3;
    if (length == 0) {
      length = static_cast<std::size_t>(arriving[start + 3]) << 8 | arriving[start + 4];
      content = start + 5;
    }
    if (length == 0 || content + length >= arriving.size()) continue;
    unsigned sum = 0;
    for (std::size_t i = start + 2; i <= content + length; ++i) sum += arriving[i];
    if (sum % 256 != 0) continue;
    const Bytes frame(arriving.begin() + static_cast<std::ptrdiff_t>(start),
                      arriving.begin() + static_cast<std::ptrdiff_t>(content + length + 1));
    if (std::find(good.begin(), good.end(), frame) == good.end()) return true;
  }
  return false;
}

Dock::Dock(ipodsim::SimulatedIpod& ipod, const Trouble& trouble, unsigned place, std::uint64_t seed)
    : ipod_(ipod), trouble_(trouble), place_(place), random_(seed, 77) {
  requests_.on_frame = [this](const Frame& frame, const Bytes& wire) { OnRequest(frame, wire); };
  answers_.on_frame = [this](const Frame& frame, const Bytes& wire) { OnAnswer(frame, wire); };
  delivered_.on_frame = [this](const Frame& frame, const Bytes&) {
    ++account_.answers;
    account_.last_answer_us = now_us_;
    NoteRefusal(frame);
  };
  patiently_.on_frame = [this](const Frame& frame, const Bytes&) {
    if (account_.last_answer_us != now_us_) NoteRefusal(frame);
  };
  const auto ignore = [](ipodsim::FramingProblem, const std::string&) {};
  requests_.on_problem = ignore;
  answers_.on_problem = ignore;
  delivered_.on_problem = ignore;
  patiently_.on_problem = ignore;
}

void Dock::Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) {
  now_us_ = now_us;
  if (trouble_.meddling == Meddling::kLoopback) {
    account_.struck = true;
    account_.cut_off = true;
    Send(now_us, Bytes(data, data + size));
    return;
  }
  for (std::size_t i = 0; i < size; ++i) requests_.Feed(data[i], now_us);
}

void Dock::OnRequest(const Frame& frame, const Bytes& wire) {
  ++account_.requests;
  account_.last_request_us = now_us_;
  if (repeated_) Send(now_us_ + kMillisecond, *std::exchange(repeated_, std::nullopt));
  if (MeddleWithRequest(frame)) return;
  const ipodsim::PlayerState state = ipod_.player().state();
  const bool was_identified = ipod_.identified();
  ipod_.Receive(wire.data(), wire.size(), now_us_);
  const bool forgot = was_identified && !ipod_.identified() && !Identifies(frame);
  if (account_.cut_off || (ipod_.plugged() && !forgot)) return;
  account_.cut_off = true;
  account_.state_before = state;
}

void Dock::CutOff() {
  account_.struck = true;
  account_.cut_off = true;
  account_.state_before = ipod_.player().state();
  ipod_.Unplug(now_us_);
}

// True when the iPod is not to hear of it.
bool Dock::MeddleWithRequest(const Frame& frame) {
  if (always_refused_ == std::make_pair(frame.lingo, frame.command)) {
    Send(now_us_ + 5 * kMillisecond, Acknowledgement(frame, 4, false));
    return true;
  }
  constexpr Meddling kWithRequests[] = {
      Meddling::kLost,     Meddling::kRefused,   Meddling::kRefusedAlways, Meddling::kPending,
      Meddling::kQuestion, Meddling::kInterrupt, Meddling::kRestart,       Meddling::kHangUp};
  const bool meddles = std::find(std::begin(kWithRequests), std::end(kWithRequests),
                                 trouble_.meddling) != std::end(kWithRequests);
  if (!meddles || !Strikes(account_.requests)) return false;
  switch (trouble_.meddling) {
    case Meddling::kLost:
      account_.struck = true;
      account_.noticeable = IsAnswered(frame);
      return true;
    case Meddling::kRefused:
    case Meddling::kRefusedAlways:
      if (!IsAnswered(frame)) {
        ++place_;
        return false;
      }
      account_.struck = true;
      if (trouble_.meddling == Meddling::kRefusedAlways) {
        always_refused_ = {frame.lingo, frame.command};
      }
      Send(now_us_ + 5 * kMillisecond,
           Acknowledgement(frame, static_cast<std::uint8_t>(1 + Drawn(4)), false));
      return true;
    case Meddling::kPending:
      if (!IsAnswered(frame)) {
        ++place_;
        return false;
      }
      account_.struck = true;
      Send(now_us_ + 2 * kMillisecond, Acknowledgement(frame, kPendingStatus, true));
      held_until_us_ = now_us_ + kPendingTime;
      return false;
    case Meddling::kQuestion: {
      account_.struck = true;
      Bytes question = IdentifierOf({0, 0, {0x40, 0x00}}, ipod_.identifiers_on());
      question.push_back(static_cast<std::uint8_t>(Drawn(2) == 0 ? 0 : 1));
      Send(now_us_ + kMillisecond,
           ipodsim::BuildFrame({ipodsim::kGeneral, ipodsim::general::kGetAccessoryInfo, question}));
      return false;
    }
    case Meddling::kInterrupt:
      account_.struck = true;
      std::raise(SIGINT);
      return false;
    case Meddling::kRestart:
      CutOff();
      back_us_ = now_us_ + kRestartTime;
      return true;
    default:  // it hangs up
      CutOff();
      return true;
  }
}

std::optional<std::int64_t> Dock::NextEvent() {
  std::optional<std::int64_t> next = ipod_.NextEvent();
  const auto sooner = [&next](std::int64_t time_us) {
    if (!next || time_us < *next) next = time_us;
  };
  if (!outgoing_.empty()) sooner(outgoing_.begin()->first);
  if (back_us_) sooner(*back_us_);
  return next;
}

std::vector<std::uint8_t> Dock::Transmit(std::int64_t now_us) {
  now_us_ = now_us;
  if (back_us_ && *back_us_ <= now_us) {
    back_us_.reset();
    ipod_.Replug(now_us);
  }
  const Bytes said = ipod_.Transmit(now_us);
  // From before: there was no accessory to hear it.
  if (account_.requests == 0 && trouble_.meddling != Meddling::kLoopback) return {};
  if (trouble_.meddling == Meddling::kNone) {
    if (!said.empty()) Send(now_us, said);
  } else {
    for (const std::uint8_t byte : said) answers_.Feed(byte, now_us);
  }
  Bytes leaving;
  while (!outgoing_.empty() && outgoing_.begin()->first <= now_us) {
    const Bytes& wire = outgoing_.begin()->second;
    NoteDelivered(wire);
    leaving.insert(leaving.end(), wire.begin(), wire.end());
    outgoing_.erase(outgoing_.begin());
  }
  return leaving;
}

void Dock::OnAnswer(const Frame& frame, const Bytes& wire) {
  ++answers_seen_;
  if (trouble_.meddling == Meddling::kSlow) {
    account_.struck = true;
    Send(now_us_ + kSlowness, wire);
    return;
  }
  const bool between = swapped_.has_value();
  if (!between && trouble_.meddling <= Meddling::kStateChange && Strikes(answers_seen_)) {
    account_.struck = true;
    if (!IsUnasked(frame)) account_.noticeable = true;
    if (DamagesBytes(trouble_.meddling)) damaged_ = true;
    Meddle(frame, wire);
    return;
  }
  if (damaged_) good_.push_back(wire);
  Send(now_us_, wire);
  if (between) Send(now_us_, *std::exchange(swapped_, std::nullopt));
}

void Dock::Meddle(const Frame& frame, Bytes wire) {
  const std::size_t byte = Drawn(wire.size());
  const auto place = wire.begin() + static_cast<std::ptrdiff_t>(byte);
  constexpr std::int64_t kDelays[] = {300 * kMillisecond, 700 * kMillisecond, 1100 * kMillisecond,
                                      1300 * kMillisecond, 2200 * kMillisecond};
  const std::int64_t later_us = now_us_ + kDelays[Drawn(std::size(kDelays))];
  switch (trouble_.meddling) {
    case Meddling::kLate:
      account_.longest_delay_us = std::max(account_.longest_delay_us, later_us - now_us_);
      Send(later_us, wire);
      return;
    case Meddling::kHeldUp:
      account_.longest_delay_us = std::max(account_.longest_delay_us, later_us - now_us_);
      held_until_us_ = later_us;
      Send(later_us, wire);
      return;
    case Meddling::kDoubled:
      Send(now_us_, wire);
      Send(now_us_, wire);
      return;
    case Meddling::kRepeated:
      Send(now_us_, wire);
      repeated_ = wire;
      return;
    case Meddling::kSwapped:
      swapped_ = wire;
      return;
    case Meddling::kMissing:
      return;
    case Meddling::kCut:
      Send(now_us_, Shortened(frame));
      return;
    case Meddling::kBroken:
      wire.erase(place, wire.end());
      Send(now_us_, wire);
      return;
    case Meddling::kJunk: {
      Bytes junk;
      for (std::size_t left = 1 + Drawn(12); left > 0; --left) {
        junk.push_back(static_cast<std::uint8_t>(Drawn(0xFF)));
      }
      Send(now_us_, junk);
      Send(now_us_, wire);
      return;
    }
    case Meddling::kDroppedByte:
      wire.erase(place);
      Send(now_us_, wire);
      return;
    case Meddling::kDoubledByte:
      wire.insert(place, std::uint8_t{*place});
      Send(now_us_, wire);
      return;
    case Meddling::kFlippedBit:
      *place = static_cast<std::uint8_t>(*place ^ (1U << Drawn(8)));
      Send(now_us_, wire);
      return;
    case Meddling::kNotification: {
      // That its state changed, as an iPod tells whoever asked for the basic events once.
      Bytes event = IdentifierOf({0, 0, {0x40, 0x01}}, ipod_.identifiers_on());
      const Bytes said = {0x06, 0x02};
      event.insert(event.end(), said.begin(), said.end());
      Send(now_us_, ipodsim::BuildFrame({ipodsim::kExtended,
                                         ipodsim::extended::kPlayStatusChangeNotification, event}));
      Send(now_us_, wire);
      return;
    }
    default: {  // it tells that it has woken
      Bytes event = IdentifierOf({0, 0, {0x40, 0x02}}, ipod_.identifiers_on());
      event.push_back(0x03);
      Send(now_us_, ipodsim::BuildFrame(
                        {ipodsim::kGeneral, ipodsim::general::kNotifyIpodStateChange, event}));
      Send(now_us_, wire);
      return;
    }
  }
}

bool Dock::Strikes(unsigned number) {
  if (trouble_.once) return number == place_;
  return Drawn(kOneIn) == 0;
}

// A good frame that ends too soon, by one byte or many.
Bytes Dock::Shortened(Frame frame) {
  if (!frame.data.empty()) frame.data.resize(Drawn(frame.data.size()));
  return ipodsim::BuildFrame(frame);
}

Bytes Dock::Acknowledgement(const Frame& frame, std::uint8_t status, bool with_time) {
  const ipodsim::CommandRule* rule = ipodsim::FindCommand(frame.lingo, frame.command);
  const bool may_carry =
      ipod_.identifiers_on() || ipodsim::TraitsOf(ipod_.settings().profile).wants_identifiers;
  const bool carries = rule != nullptr && rule->CarriesIdentifier() && may_carry;
  Bytes data = IdentifierOf(frame, carries);
  data.push_back(status);
  if (frame.lingo == ipodsim::kExtended) ipodsim::Put8(data, frame.command >> 8);
  ipodsim::Put8(data, frame.command);
  if (with_time) ipodsim::Put32(data, static_cast<std::uint32_t>(kPendingTime / kMillisecond));
  return ipodsim::BuildFrame({frame.lingo, ipodsim::AckCommand(frame.lingo), data});
}

void Dock::Send(std::int64_t due_us, Bytes wire) {
  const bool held =
      trouble_.meddling == Meddling::kHeldUp || trouble_.meddling == Meddling::kPending;
  const bool is_ack = due_us > now_us_;  // what the dock itself says of a request comes first
  if (held && !is_ack) due_us = std::max(due_us, held_until_us_);
  outgoing_.emplace(due_us, std::move(wire));
}

void Dock::NoteDelivered(const Bytes& wire) {
  if (damaged_) {
    arriving_.insert(arriving_.end(), wire.begin(), wire.end());
    if (HoldsAnotherFrame(arriving_, good_)) account_.checksum_held = true;
  }
  for (const std::uint8_t byte : wire) {
    delivered_.Feed(byte, now_us_);
    patiently_.Feed(byte, 0);
  }
}

void Dock::NoteRefusal(const Frame& frame) {
  std::optional<Refusal> refusal = RefusalIn(frame);
  if (!refusal) return;
  refusal->after = account_.requests;
  account_.refusals.push_back(*refusal);
}

std::size_t Dock::Drawn(std::size_t limit) {
  return random_.Below(static_cast<std::uint32_t>(std::max<std::size_t>(limit, 1)));
}

}  // namespace truth
