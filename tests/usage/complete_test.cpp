// SPDX-License-Identifier: MIT
// What is offered at the end of a command line: what fits there and nothing else.
#include "usage/complete.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using usage::Complete;

namespace {

// A program with two commands, one of which has commands of its own.
class Completion : public ::testing::Test {
 protected:
  Completion() {
    app_.add_option("--port", port_, "Where it is")->option_text("DEVICE");
    CLI::Option* simulated =
        app_.add_flag("--simulated{nano}", simulated_, "Without it")->option_text("[=PROFILE]");
    values_.Add(simulated, {"nano", "old"});
    app_.get_option("--port")->excludes(simulated);
    CLI::Option* habit = app_.add_option("--habit", habits_, "Its ways");
    habit->allow_extra_args(false)->option_text("NAME");
    values_.Add(habit, {"late", "loud"});
    app_.add_option("--library", file_, "Its music")->option_text("FILE");
    app_.add_option("--storage", file_, "Its files")->option_text("DIR");
    app_.add_option("--seed", seed_, "Its number")->option_text("N");

    CLI::App* list = app_.add_subcommand("list", "List things");
    list->fallthrough();
    values_.Add(list->add_option("PATH", path_), {"tracks", "artists"});
    list->add_option("--kind", kind_, "Of what kind")->option_text("audio|video");
    list->add_flag("-l,--long", long_, "With all");
    list->add_option("-o,--output", file_, "To where")->option_text("PAGE");

    CLI::App* set = app_.add_subcommand("prefs", "Preferences")->add_subcommand("set", "Set one");
    values_.Add(set->add_option("NAME", name_), {"aspect", "line"});
    CLI::Option* value = set->add_option("VALUE", value_);
    values_.AddAfter("aspect", value, {"4:3", "16:9"});
    values_.AddAfter("line", value, {"off", "on"});
  }

  std::string After(const std::vector<std::string>& words) const {
    return Complete(app_, values_, words);
  }

  CLI::App app_{"A program", "program"};
  usage::Values values_;
  std::string port_, simulated_, file_, kind_, name_, value_;
  std::vector<std::string> habits_, path_;
  int seed_ = 0;
  bool long_ = false;
};

TEST_F(Completion, OffersCommandsWithWhatTheyDo) {
  EXPECT_EQ(After({""}), "none\nlist\tList things\nprefs\tPreferences\n");
  EXPECT_EQ(After({}), "none\nlist\tList things\nprefs\tPreferences\n");
  EXPECT_EQ(After({"l"}), "none\nlist\tList things\n");
  EXPECT_EQ(After({"x"}), "none\n");
  EXPECT_EQ(After({"prefs", ""}), "none\nset\tSet one\n");
}

TEST_F(Completion, TakesAnOptionsValueForNoCommand) {
  EXPECT_EQ(After({"--port", "list", "p"}), "none\nprefs\tPreferences\n");
  EXPECT_EQ(After({"--port=list", "p"}), "none\nprefs\tPreferences\n");
  EXPECT_EQ(After({"--seed", "p"}), "none\n");
  EXPECT_EQ(After({"list", "-o", "x", "t"}), "none\ntracks\n");
  EXPECT_EQ(After({"list", "-ox", "t"}), "none\ntracks\n");
  EXPECT_EQ(After({"--simulated", "l"}), "none\nlist\tList things\n");
}

TEST_F(Completion, OffersTheValuesOfAnOption) {
  EXPECT_EQ(After({"--simulated="}), "none\n--simulated=nano\n--simulated=old\n");
  EXPECT_EQ(After({"--habit", "lo"}), "none\nloud\n");
  EXPECT_EQ(After({"--habit=la"}), "none\n--habit=late\n");
  EXPECT_EQ(After({"list", "--kind", ""}), "none\naudio\nvideo\n");
  EXPECT_EQ(After({"list", "--habit", "lo"}), "none\nloud\n");
  EXPECT_EQ(After({"--unknown=x"}), "none\n");
}

TEST_F(Completion, LeavesPathsToTheShell) {
  EXPECT_EQ(After({"--library", "x"}), "files\n");
  EXPECT_EQ(After({"--library=x"}), "files\n");
  EXPECT_EQ(After({"list", "--output", ""}), "files\n");
  EXPECT_EQ(After({"--storage", ""}), "folders\n");
  // A port that no hardware stands behind.
  EXPECT_EQ(After({"--port", "/tmp/"}), "files\n");
}

TEST_F(Completion, OffersAPositionByItsPlace) {
  EXPECT_EQ(After({"list", ""}), "none\ntracks\nartists\n");
  EXPECT_EQ(After({"list", "artists", "t"}), "none\n");
  EXPECT_EQ(After({"prefs", "set", ""}), "none\naspect\nline\n");
  EXPECT_EQ(After({"prefs", "set", "aspect", ""}), "none\n4:3\n16:9\n");
  EXPECT_EQ(After({"prefs", "set", "line", "o"}), "none\noff\non\n");
  EXPECT_EQ(After({"prefs", "set", "nonsense", "o"}), "none\n");
}

TEST_F(Completion, OffersOptionsThatCanStillBeGiven) {
  EXPECT_EQ(After({"list", "--l"}), "none\n--long\tWith all\n--library\tIts music\n");
  EXPECT_EQ(After({"list", "--long", "--l"}), "none\n--library\tIts music\n");
  EXPECT_EQ(After({"list", "-l", "--lo"}), "none\n");
  EXPECT_EQ(After({"--port", "x", "--si"}), "none\n");
  EXPECT_EQ(After({"--simulated", "--po"}), "none\n");
  EXPECT_EQ(After({"--habit", "late", "--ha"}), "none\n--habit\tIts ways\n");
}

TEST_F(Completion, OffersNoOptionsBehindTwoDashes) {
  EXPECT_EQ(After({"list", "--", "--l"}), "none\n");
  EXPECT_EQ(After({"list", "--", "t"}), "none\ntracks\n");
}

TEST_F(Completion, OffersOptionsWhereNothingElseFits) {
  EXPECT_EQ(After({"prefs", "set", "line", "on", ""}),
            "none\n--help\tPrint this help message and exit\n--port\tWhere it is\n"
            "--simulated\tWithout it\n--habit\tIts ways\n--library\tIts music\n"
            "--storage\tIts files\n--seed\tIts number\n");
}

}  // namespace
