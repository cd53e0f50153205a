// Words out of the archive, many records at once.
// SPDX-License-Identifier: MIT
#include "baseline/spectra.h"

#include <algorithm>
#include <cstdlib>

#include "numeric/number_format.h"

namespace kestrel::baseline {
namespace {

using database::DatabaseError;

constexpr std::size_t kAtOnce = 1024;     // records a statement
constexpr std::int64_t kWidestGap = 8;    // of ids that are read over rather than asked around
constexpr Spectra::Word kErased = 65535;  // of memory that nothing has been written to

enum class Reading : std::uint8_t { Missing, Read, Damaged, Empty };

class Loading {
 public:
  Loading(archive::Archive& archive, Sets sets) : archive_(archive), loaded_{std::move(sets), {}} {
    for (const auto* members : {&loaded_.sets.good, &loaded_.sets.bad}) {
      for (const Member& member : *members) wanted_.emplace_back(member.id, wanted_.size());
    }
    std::ranges::sort(wanted_);
    readings_.resize(wanted_.size(), Reading::Missing);
    words_.resize(wanted_.size() * Spectra::kWords);
  }

  Loaded Take(const std::function<bool(std::size_t, std::size_t)>& goOn) {
    for (std::size_t from = 0; from < wanted_.size();) {
      if (!goOn(from, wanted_.size())) return {.sets = {}, .spectra = {}, .whole = false};
      const std::size_t end = EndOfBlock(from);
      Read(from, end);
      from = end;
    }
    std::size_t number = 0;  // of the records that were asked for
    std::size_t kept = 0;
    Keep(loaded_.sets.good, number, kept);
    Keep(loaded_.sets.bad, number, kept);
    words_.resize(kept * Spectra::kWords);
    loaded_.spectra = Spectra(std::move(words_));
    return std::move(loaded_);
  }

 private:
  // Ids close to one another are read as one range.
  [[nodiscard]] std::size_t EndOfBlock(std::size_t from) const {
    std::size_t end = from + 1;
    while (end < wanted_.size() && end - from < kAtOnce &&
           wanted_[end].first - wanted_[end - 1].first <= kWidestGap) {
      ++end;
    }
    return end;
  }

  // Where the database is damaged, ever smaller parts are tried, so that one record is lost alone.
  void Read(std::size_t from, std::size_t end) {
    try {
      ReadRange(from, end);
    } catch (const DatabaseError& error) {
      if (error.fault != database::Fault::Corrupt) throw;
      if (end - from == 1) {
        readings_[wanted_[from].second] = Reading::Damaged;
        return;
      }
      const std::size_t middle = from + (end - from) / 2;
      Read(from, middle);
      Read(middle, end);
    }
  }

  void ReadRange(std::size_t from, std::size_t end) {
    auto next = from;
    archive_.Connection().Run(
        "select record, signed, words from points where record between $1 and $2 order by record",
        {wanted_[from].first, wanted_[end - 1].first}, [&](database::Row row) {
          const std::int64_t id = database::Integer(row[0]);
          while (next < end && wanted_[next].first < id) ++next;
          if (next == end || wanted_[next].first != id) return;
          TakeWords(wanted_[next].second, database::Blob(row[2]), database::Integer(row[1]) != 0);
        });
  }

  void TakeWords(std::size_t record, const database::Bytes& bytes, bool areSigned) {
    if (bytes.size() != 2 * Spectra::kWords) {
      readings_[record] = Reading::Damaged;
      return;
    }
    const auto words = std::span(words_).subspan(record * Spectra::kWords, Spectra::kWords);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const auto word = static_cast<std::uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
      words[i] =
          areSigned ? static_cast<Spectra::Word>(std::abs(static_cast<std::int16_t>(word))) : word;
    }
    const auto isBlank = [&](Spectra::Word blank) {
      return std::ranges::all_of(words, [blank](Spectra::Word word) { return word == blank; });
    };
    readings_[record] = isBlank(0) || isBlank(kErased) ? Reading::Empty : Reading::Read;
  }

  // Closes the gaps of records that could not be read, in the words and in the set.
  void Keep(std::vector<Member>& members, std::size_t& number, std::size_t& kept) {
    std::erase_if(members, [&](const Member& member) {
      const std::size_t record = number++;
      if (readings_[record] != Reading::Read) {
        LeaveOut(readings_[record], member.id);
        return true;
      }
      const auto words = words_.begin() + static_cast<std::ptrdiff_t>(record * Spectra::kWords);
      if (kept != record) {
        std::copy_n(words, Spectra::kWords,
                    words_.begin() + static_cast<std::ptrdiff_t>(kept * Spectra::kWords));
      }
      ++kept;
      return false;
    });
  }

  void LeaveOut(Reading reading, std::int64_t id) {
    const LeftOut group = reading == Reading::Empty
                              ? LeftOut{"Empty", "all points are the same blank word", {}}
                          : reading == Reading::Damaged
                              ? LeftOut{"Damaged", "the archive's copy cannot be read", {}}
                              : LeftOut{"Without points", "the archive holds none of them", {}};
    auto& groups = loaded_.sets.leftOut;
    auto known = std::ranges::find(groups, group.title, &LeftOut::title);
    if (known == groups.end()) known = groups.insert(known, group);
    known->ids.push_back(id);
  }

  archive::Archive& archive_;
  Loaded loaded_;
  std::vector<std::pair<std::int64_t, std::size_t>> wanted_;  // ids and their records' numbers
  std::vector<Reading> readings_;                             // by number
  std::vector<Spectra::Word> words_;
};

}  // namespace

Loaded Load(archive::Archive& archive, Sets sets,
            const std::function<bool(std::size_t done, std::size_t all)>& goOn) {
  const std::size_t all = sets.good.size() + sets.bad.size();
  if (all > kMostRecords) {
    throw RuntimeError(GroupedWholeNumber(static_cast<double>(all)) +
                       " records are more than a baseline can hold; take one in an hour or so, at "
                       "most " +
                       GroupedWholeNumber(static_cast<double>(kMostRecords)) + ".");
  }
  return Loading(archive, std::move(sets)).Take(goOn);
}

}  // namespace kestrel::baseline
