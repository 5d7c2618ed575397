// SPDX-License-Identifier: MIT
// Chooses steps, and picks the samples that are drawn.
#include "report/axis.h"

#include <algorithm>
#include <cmath>

namespace ipodctl {

double RoundNumber(double at_least) {
  const double power = std::pow(10, std::floor(std::log10(at_least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    // A step that only rounding makes too small is good.
    if (factor * power >= at_least * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

namespace {

double RoundTime(double at_least) {
  constexpr double kHour = 3600;
  constexpr double kTimes[] = {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, kHour};
  for (const double time : kTimes) {
    if (time >= at_least) return time;
  }
  return kHour * RoundNumber(at_least / kHour);
}

double StepFor(double span, std::size_t most_ticks) {
  return span / static_cast<double>(most_ticks - 1);
}

// Low and high moved outwards to multiples of the step, which may take one tick more than wanted.
Scale InSteps(double low, double high, double step) {
  Scale scale;
  scale.low = std::floor(low / step + 1e-9) * step;
  scale.high = std::ceil(high / step - 1e-9) * step;
  if (scale.high <= scale.low) scale.high = scale.low + step;
  const auto count = static_cast<int>(std::lround((scale.high - scale.low) / step));
  for (int i = 0; i <= count; ++i) scale.ticks.push_back(scale.low + i * step);
  return scale;
}

template <typename Round>
Scale RoundScale(double low, double high, std::size_t most_ticks, double smallest_step,
                 Round round) {
  double step = round(std::max(smallest_step, StepFor(high - low, most_ticks)));
  Scale scale = InSteps(low, high, step);
  while (scale.ticks.size() > most_ticks) {
    step = round(step * 1.01);
    scale = InSteps(low, high, step);
  }
  return scale;
}

class Column {
 public:
  void Add(const Sample& sample, std::vector<Sample>* kept) {
    if (count_ == 0) {
      kept->push_back(sample);
      lowest_ = highest_ = sample;
    } else {
      if (sample.value < lowest_.value) lowest_ = sample;
      if (sample.value > highest_.value) highest_ = sample;
    }
    last_ = sample;
    ++count_;
  }

  // The first is kept already.
  void Close(std::vector<Sample>* kept) const {
    if (count_ == 0) return;
    Sample inner[] = {lowest_, highest_, last_};
    std::stable_sort(
        std::begin(inner), std::end(inner),
        [](const Sample& left, const Sample& right) { return left.seconds < right.seconds; });
    for (Sample& sample : inner) {
      sample.starts_anew = false;
      const Sample& before = kept->back();
      if (sample.seconds == before.seconds && sample.value == before.value) continue;
      kept->push_back(sample);
    }
  }

 private:
  Sample lowest_;
  Sample highest_;
  Sample last_;
  std::size_t count_ = 0;
};

}  // namespace

Scale NumberScale(double low, double high, std::size_t most_ticks, double smallest_step) {
  return RoundScale(low, high, most_ticks, smallest_step, RoundNumber);
}

Scale ClockScale(double low, double high, std::size_t most_ticks) {
  return RoundScale(low, high, most_ticks, 5, RoundTime);
}

std::vector<double> TimeTicks(double end, std::size_t most_ticks) {
  const double step = RoundTime(StepFor(end, most_ticks));
  std::vector<double> ticks;
  for (std::size_t i = 0; static_cast<double>(i) * step <= end; ++i) {
    ticks.push_back(static_cast<double>(i) * step);
  }
  return ticks;
}

std::vector<Sample> Thinned(const std::vector<Sample>& course, double end, std::size_t columns) {
  std::vector<Sample> kept;
  Column column;
  std::size_t open = columns;  // none yet
  for (const Sample& sample : course) {
    const double share = sample.seconds / end * static_cast<double>(columns);
    const std::size_t index = std::min(columns - 1, static_cast<std::size_t>(share));
    if (index != open) {
      column.Close(&kept);
      column = Column();
      open = index;
    }
    column.Add(sample, &kept);
  }
  column.Close(&kept);
  return kept;
}

}  // namespace ipodctl
