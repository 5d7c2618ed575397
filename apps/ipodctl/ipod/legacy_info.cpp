// SPDX-License-Identifier: MIT
// ipodctl --legacy info: what is in the dock, in the legacy interface's own words.
#include <nlohmann/json.hpp>

#include "console/text.h"
#include "ipod/display_text.h"
#include "ipod/workout_support.h"
#include "legacy_commands.h"

namespace ipodctl {

void RunLegacyInfo(const Context& context, LegacySession& session) {
  ipod& docked = session.interface();
  DisplayText name;
  DisplayText model;
  DisplayText number;
  DisplayText serial;
  DisplayText software;
  DisplayText general;
  session.Require(docked.getipodname(name.buffer()) != 0, "tell its name");
  session.Require(docked.getipodmodelname(model.buffer()) != 0, "tell its model");
  session.Require(docked.getipodmodelnum(number.buffer()) != 0, "tell its model number");
  session.Require(docked.getipodserailnum(serial.buffer()) != 0, "tell its serial number");
  // The result says no for versions 0.x; the text is there all the same.
  docked.getipodsoftwareversion(software.buffer(), DisplayText::kCapacity);
  session.Require(!software.text().empty(), "tell its software version");
  session.Require(docked.getipodlingoversion(general.buffer(), 0) != 0, "tell a lingo version");
  const bool workouts = TakesWorkouts(docked);

  Output& output = context.output;
  output.Object({{"device", context.dock.device()},
                 {"name", name.text()},
                 {"model", model.text()},
                 {"model_number", number.text()},
                 {"serial_number", serial.text()},
                 {"software_version", software.text()},
                 {"lingo_version", general.text()},
                 {"sports", workouts}});
  output.Line(output.Bold(Printable(name.text())) + " on " + context.dock.device());
  output.Fact("Model", Printable(model.text()));
  output.Fact("Model number", number.text());
  output.Fact("Serial number", Printable(serial.text()));
  output.Fact("Software version", software.text());
  output.Fact("Lingo version", general.text());
  output.Fact("Workouts", workouts ? "supported" : "not supported");
}

}  // namespace ipodctl
