// SPDX-License-Identifier: MIT
// The records of a list, and how many there are of each category.
#include "untrue/catalogue.h"
#include "untrue/subjects.h"

namespace truth {

namespace {

using ipodsim::Category;

// The records of all lines, whether a line holds one or many of them.
std::vector<std::pair<std::size_t, std::string>> RecordsIn(const std::vector<Json>& said) {
  std::vector<std::pair<std::size_t, std::string>> records;
  for (const Json& line : said) {
    const Json listed = line.contains("records") && line.at("records").is_array()
                            ? line.at("records")
                            : Json::array({line});
    for (const Json& record : listed) {
      if (!record.contains("index") || !record.contains("name")) continue;
      records.emplace_back(record.at("index"), record.at("name"));
    }
  }
  return records;
}

// The legacy interface's texts have room for 256 characters; a longer name has no text.
bool IsTooLong(const Question& question, const std::string& name) {
  return question.run.legacy() && name.size() > 256;
}

std::string UntrueOverview(const Question& question) {
  ipodsim::Database database(&question.ipod.settings().library);
  const Json told = question.last().value("categories", Json::object());
  for (const char* name : {"playlists", "nested-playlists", "artists", "albums", "genres",
                           "composers", "audiobooks", "podcasts", "tracks"}) {
    if (question.so_far && !told.contains(name)) continue;
    const std::string untrue = Expect(told, name, database.Count(CategoryOf(name)));
    if (!untrue.empty()) return untrue;
  }
  return "";
}

// The records that were told, against all that there are.
std::string UntrueRecords(const Question& question, const std::vector<std::string>& names) {
  const std::size_t from = question.options.from;
  const std::size_t count = question.options.count.value_or(names.size() - from);
  for (const Json& line : question.said) {
    if (line.contains("total") && line.at("total") != names.size()) {
      return Differs("total", line.at("total"), names.size());
    }
  }
  const auto records = RecordsIn(question.said);
  for (std::size_t i = 0; i < count && i < records.size(); ++i) {
    if (records[i].first != from + i) return Differs("index", records[i].first, from + i);
    if (records[i].second != names[from + i] && !IsTooLong(question, names[from + i])) {
      return Differs("record " + std::to_string(from + i), records[i].second, names[from + i]);
    }
  }
  if (question.so_far && records.size() < count) return "";
  return records.size() == count ? "" : Differs("records", records.size(), count);
}

}  // namespace

std::string UntrueList(const Question& question) {
  const std::vector<std::string>& path = question.options.path;
  if (path.empty()) return UntrueOverview(question);
  ipodsim::Database database(&question.ipod.settings().library);
  Category category = CategoryOf(path.front());
  for (std::size_t i = 1; i < path.size(); ++i) {
    database.Select(category, IndexOf(database, category, path[i]));
    category = Below(category);
  }
  if (path.size() > 1 && ListsByName(question)) database.SetSort(ipodsim::Sort::kName);
  return UntrueRecords(question, NamesIn(database, category));
}

}  // namespace truth
