// SPDX-License-Identifier: MIT
// Distances, speeds and weights in the units of the reader. Documents are metric.
#pragma once

#include "report/phrases.h"

namespace ipodctl {

enum class Units { kMetric, kImperial };

class Measures {
 public:
  explicit Measures(Units units = Units::kMetric) : imperial_(units == Units::kImperial) {}

  double Distance(double km) const { return imperial_ ? km / kKilometresPerMile : km; }
  double Speed(double km_per_hour) const { return Distance(km_per_hour); }
  /// @return seconds for each kilometre or mile
  double Pace(double seconds_per_km) const {
    return imperial_ ? seconds_per_km * kKilometresPerMile : seconds_per_km;
  }
  double Weight(double kg) const { return imperial_ ? kg / kKilogramsPerPound : kg; }

  Phrase distance_unit() const { return imperial_ ? Phrase::kMiles : Phrase::kKilometres; }
  Phrase speed_unit() const {
    return imperial_ ? Phrase::kMilesPerHour : Phrase::kKilometresPerHour;
  }
  Phrase pace_unit() const {
    return imperial_ ? Phrase::kMinutesPerMile : Phrase::kMinutesPerKilometre;
  }
  Phrase weight_unit() const { return imperial_ ? Phrase::kPounds : Phrase::kKilograms; }

 private:
  static constexpr double kKilometresPerMile = 1.609344;
  static constexpr double kKilogramsPerPound = 0.45359237;

  bool imperial_;
};

}  // namespace ipodctl
