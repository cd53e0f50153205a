// Rows of the archive sorted into sets.
// SPDX-License-Identifier: MIT
#include "baseline/sets.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "archive/record_row.h"

namespace kestrel::baseline {
namespace {

// A record on its way into a set.
struct Candidate {
  Member member;
  std::size_t part = 0;
  Settings settings;
  std::string place;  // of its machine, for whoever reads it
  bool isSpectrum = true;
  bool isNew = true;
};

class Sorting {
 public:
  Sorting(archive::Archive& archive, std::span<const Part> parts)
      : archive_(archive), parts_(parts) {}

  Sets Take(const Wanted& wanted) {
    for (std::size_t part = 0; part < parts_.size(); ++part) Read(part);
    DropTwice();
    DropUnfit();
    sets_.settings = Commonest(wanted);
    DropOthers();
    for (std::size_t part = 0; part < parts_.size(); ++part) Place(part);
    ByRun(sets_.good);
    ByRun(sets_.bad);
    std::ranges::stable_sort(sets_.leftOut, std::greater{},
                             [](const LeftOut& group) { return group.ids.size(); });
    return std::move(sets_);
  }

 private:
  static void ByRun(std::vector<Member>& members) {
    std::ranges::stable_sort(members, {}, [](const Member& member) {
      return std::tuple(member.run, member.time, member.id);
    });
  }
  [[nodiscard]] bool IsGood(const Candidate& candidate) const {
    return parts_[candidate.part].verdict == Verdict::Good;
  }

  void Read(std::size_t part);
  void LeaveOut(const std::string& title, const std::string& reason, std::int64_t id);
  template <typename Unfit>
  void DropWhere(const std::string& title, const std::string& reason, Unfit unfit);
  void DropTwice();
  void DropUnfit();
  void DropOthers();
  [[nodiscard]] std::optional<Settings> CommonestOf(bool good, const Wanted& wanted) const;
  [[nodiscard]] Settings Commonest(const Wanted& wanted) const;
  void Place(std::size_t part);

  archive::Archive& archive_;
  std::span<const Part> parts_;
  std::vector<Candidate> candidates_;  // by part, then time
  std::map<std::tuple<std::size_t, std::int64_t, std::string, std::string>, int> runs_;
  Sets sets_;
};

std::string PlaceText(const std::string& machine, const std::string& point) {
  return machine.empty() || point.empty() ? machine + point : machine + ", " + point;
}

void Sorting::Read(std::size_t part) {
  const Part& chosen = parts_[part];
  std::set<std::int64_t> asked(chosen.ids.begin(), chosen.ids.end());
  const archive::Condition condition = archive::ConditionOf(chosen.filter, archive_.Version());
  archive_.Connection().Run(
      "select r.id, r.taken, r.kind, r.rec_info, r.stopped, r.count_before, r.record_count, "
      "r.source, r.machine, r.point from record r join source s on s.id = r.source where " +
          condition.sql + " order by r.taken, r.id",
      condition.values, [&](database::Row row) {
        const std::int64_t id = database::Integer(row[0]);
        if (!chosen.ids.empty() && asked.erase(id) == 0) return;
        Candidate& candidate = candidates_.emplace_back();
        candidate.member = {.id = id, .time = archive::TimeOf(database::Integer(row[1]))};
        candidate.part = part;
        candidate.isSpectrum = database::Integer(row[2]) == 0;
        const auto info = static_cast<std::int32_t>(database::Integer(row[3]));
        candidate.settings = SettingsOf(SettingsFromWords(info, 0));
        const bool moved = !database::IsNull(row[5]) && row[5] != row[6];
        candidate.isNew = database::Integer(row[4]) == 0 || moved;
        const std::string& machine = database::Text(row[8]);
        const std::string& point = database::Text(row[9]);
        candidate.place = PlaceText(machine, point);
        candidate.member.run = runs_
                                   .try_emplace({part, database::Integer(row[7]), machine, point},
                                                static_cast<int>(runs_.size()))
                                   .first->second;
      });
  for (const std::int64_t id : asked) {
    LeaveOut("Not found", "deleted, or none of those that were asked for", id);
  }
}

void Sorting::LeaveOut(const std::string& title, const std::string& reason, std::int64_t id) {
  auto group = std::ranges::find(sets_.leftOut, title, &LeftOut::title);
  if (group == sets_.leftOut.end()) group = sets_.leftOut.insert(group, LeftOut{title, reason, {}});
  group->ids.push_back(id);
}

template <typename Unfit>
void Sorting::DropWhere(const std::string& title, const std::string& reason, Unfit unfit) {
  std::erase_if(candidates_, [&](const Candidate& candidate) {
    if (!unfit(candidate)) return false;
    LeaveOut(title, reason, candidate.member.id);
    return true;
  });
}

// What is chosen twice counts once; what is chosen as good and bad is neither.
void Sorting::DropTwice() {
  std::map<std::int64_t, std::pair<bool, bool>> verdicts;  // good, bad
  for (const Candidate& candidate : candidates_) {
    auto& verdict = verdicts[candidate.member.id];
    (IsGood(candidate) ? verdict.first : verdict.second) = true;
  }
  std::set<std::int64_t> met;
  std::erase_if(candidates_, [&](const Candidate& candidate) {
    const std::int64_t id = candidate.member.id;
    const bool isFirst = met.insert(id).second;
    const auto [isGood, isBad] = verdicts[id];
    if (isFirst && isGood && isBad) {
      LeaveOut("Chosen as good and as bad", "a record cannot be both", id);
    }
    return !isFirst || (isGood && isBad);
  });
}

void Sorting::DropUnfit() {
  DropWhere("Time records", "alarm bands are those of spectra",
            [](const Candidate& candidate) { return !candidate.isSpectrum; });
  DropWhere("Stopped captures", "hold the data of the record before",
            [](const Candidate& candidate) { return !candidate.isNew; });
}

// The most frequent among good or bad records that are allowed; the settings met first where two
// are as frequent.
std::optional<Settings> Sorting::CommonestOf(bool good, const Wanted& wanted) const {
  std::vector<std::pair<Settings, std::size_t>> found;
  for (const Candidate& candidate : candidates_) {
    if (IsGood(candidate) != good || !wanted.Allows(candidate.settings)) continue;
    const auto known =
        std::ranges::find(found, candidate.settings, &std::pair<Settings, std::size_t>::first);
    known == found.end() ? void(found.emplace_back(candidate.settings, 1)) : void(++known->second);
  }
  if (found.empty()) return std::nullopt;
  return std::ranges::max_element(found, {}, &std::pair<Settings, std::size_t>::second)->first;
}

// Where no record is allowed, those of most with what is wanted in their place.
Settings Sorting::Commonest(const Wanted& wanted) const {
  for (const Wanted& allowed : {wanted, Wanted{}}) {
    for (const bool good : {true, false}) {
      const auto found = CommonestOf(good, allowed);
      if (found) return wanted.Over(*found);
    }
  }
  return wanted.Over({});
}

// By the first of the settings that is another.
void Sorting::DropOthers() {
  const Settings& common = sets_.settings;
  const auto drop = [&](const std::string& title, const auto& text, int Settings::*setting) {
    std::set<int> others;
    for (const Candidate& candidate : candidates_) others.insert(candidate.settings.*setting);
    others.erase(common.*setting);
    for (const int other : others) {
      DropWhere(title + text(other), "cannot be compared with " + text(common.*setting),
                [&](const Candidate& candidate) { return candidate.settings.*setting == other; });
    }
  };
  drop(
      "Sample-rate ", [](int option) { return "option " + std::to_string(option); },
      &Settings::option);
  drop("Window: ", WindowText, &Settings::window);
  drop("Range ", RangeText, &Settings::range);
  drop("Averaged otherwise: ", AveragesText, &Settings::averages);
}

void Sorting::Place(std::size_t part) {
  const Part& chosen = parts_[part];
  PartTaken taken{.verdict = chosen.verdict, .name = chosen.name, .every = chosen.every};
  std::map<int, Moment> latest;  // of each run
  std::set<std::string> places;
  for (const Candidate& candidate : candidates_) {
    if (candidate.part != part) continue;
    ++taken.found;
    const Member& member = candidate.member;
    const auto before = latest.find(member.run);
    if (before != latest.end() && member.time < before->second + chosen.every) continue;
    latest[member.run] = member.time;
    if (taken.taken++ == 0) taken.first = member.time;
    taken.last = member.time;
    if (!candidate.place.empty()) places.insert(candidate.place);
    (IsGood(candidate) ? sets_.good : sets_.bad).push_back(member);
  }
  taken.places.assign(places.begin(), places.end());
  sets_.parts.push_back(std::move(taken));
}

}  // namespace

std::size_t Sets::LeftOutCount() const {
  std::size_t count = 0;
  for (const LeftOut& group : leftOut) count += group.ids.size();
  return count;
}

Sets SetsOf(archive::Archive& archive, std::span<const Part> parts, const Wanted& wanted) {
  return Sorting(archive, parts).Take(wanted);
}

}  // namespace kestrel::baseline
