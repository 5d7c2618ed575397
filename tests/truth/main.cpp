// SPDX-License-Identifier: MIT
// Runs ipodctl's commands against the simulated iPod and everything that goes wrong there, and
// tells how often they told the truth.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>

#include "survey.h"

int main(int argc, char** argv) {
  CLI::App app{"Runs ipodctl's commands against every trouble, and judges what they say."};
  std::uint64_t runs = 10'000;
  std::uint64_t seed = 1;
  unsigned jobs = 2;
  std::string only;
  std::string scene;
  std::string trouble;
  bool honest = false;
  bool findings = false;
  app.add_option("--runs", runs, "How many (10000)");
  app.add_option("--seed", seed, "Which ones (1)");
  app.add_option("--jobs", jobs, "How many at a time (2)");
  app.add_option("--only", only, "This run, with every frame");
  app.add_option("--scene", scene, "Runs of this command alone");
  app.add_option("--trouble", trouble, "Runs with this trouble alone");
  app.add_flag("--honest", honest, "Show honest failures too; with --findings what is not named");
  app.add_flag("--findings", findings, "Which troubles are found out as what");
  CLI11_PARSE(app, argc, argv);
  if (!only.empty()) return truth::Repeat(only);
  return truth::Survey({runs, seed, jobs, scene, trouble, honest, findings}).Run() ? 0 : 1;
}
