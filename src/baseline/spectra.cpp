// Words out of the archive, many records at once.
// SPDX-License-Identifier: MIT
#include "baseline/spectra.h"

#include <algorithm>
#include <array>
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
    loaded_.spectra = Spectra(wanted_.size());
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
    loaded_.spectra.Shorten(kept);
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
    std::array<Spectra::Word, Spectra::kWords> words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
      const auto word = static_cast<std::uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
      words[i] =
          areSigned ? static_cast<Spectra::Word>(std::abs(static_cast<std::int16_t>(word))) : word;
    }
    loaded_.spectra.Set(record, words);
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
      if (kept != record) loaded_.spectra.Copy(record, kept);
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
};

}  // namespace

Spectra::Spectra(std::size_t count)
    : count_(count), words_((count + kTile - 1) / kTile * kTile * kWords) {}

void Spectra::Shorten(std::size_t count) {
  words_.resize((count + kTile - 1) / kTile * kTile * kWords);
  for (count_ = std::min(count_, words_.size() / kWords); count_ > count; --count_) {
    const std::array<Word, kWords> none{};
    Set(count_ - 1, none);
  }
}

void Spectra::Set(std::size_t record, std::span<const Word> words) {
  Word* place = words_.data() + PlaceOf(record);
  for (std::size_t i = 0; i < kWords; ++i) place[i * kTile] = words[i];
}

void Spectra::Copy(std::size_t from, std::size_t to) {
  const Word* source = words_.data() + PlaceOf(from);
  Word* place = words_.data() + PlaceOf(to);
  for (std::size_t i = 0; i < kWords; ++i) place[i * kTile] = source[i * kTile];
}

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
