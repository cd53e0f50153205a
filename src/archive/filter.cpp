// From a filter's fields to a condition.
// SPDX-License-Identifier: MIT
#include "archive/filter.h"

#include "archive/record_row.h"

namespace kestrel::archive {
namespace {

// Fields of a REC_INFO word: see SettingsFromWords.
constexpr int kOptionShift = 14;
constexpr int kWindowShift = 12;
constexpr int kRangeShift = 10;

// "%" and "_" stand for themselves.
std::string Within(const std::string& text) {
  std::string pattern = "%";
  for (const char letter : text) {
    if (letter == '%' || letter == '_' || letter == '\\') pattern += '\\';
    pattern += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return pattern + "%";
}

class Builder {
 public:
  void And(const std::string& sql) { condition_.sql += " and " + sql; }
  // The number of a value, as statements name it.
  std::string Numbered(database::Value value) {
    condition_.values.push_back(std::move(value));
    return "$" + std::to_string(condition_.values.size());
  }
  void AndField(int shift, const std::optional<int>& code) {
    if (!code) return;
    And("(r.rec_info >> " + std::to_string(shift) + ") & 3 = " + Numbered(std::int64_t{*code}));
  }
  void AndText(const char* column, const std::optional<std::string>& text) {
    if (text) And(std::string(column) + " = " + Numbered(*text));
  }
  void AndWithin(const std::string& text) {
    const std::string pattern = Numbered(Within(text));
    std::string any;
    for (const char* column : {"r.machine", "r.point", "r.note", "r.tags"}) {
      any += (any.empty() ? "(lower(" : " or lower(") + std::string(column) + ") like " + pattern +
             " escape '\\'";
    }
    And(any + ")");
  }
  [[nodiscard]] Condition Take() { return std::move(condition_); }

 private:
  Condition condition_{"1 = 1", {}};
};

// Tables of version 1 know of none.
void AndWide(Builder& builder, const Filter& filter, std::int64_t version) {
  if (version < 2) {
    if (filter.set || filter.wide.value_or(false)) builder.And("1 = 0");
    return;
  }
  if (filter.wide) {
    builder.And(*filter.wide ? "r.wide_set is not null" : "r.wide_set is null");
  }
  if (filter.set) {
    builder.And("r.wide_set = " +
                builder.Numbered(database::Bytes(filter.set->begin(), filter.set->end())));
  }
}

}  // namespace

Condition ConditionOf(const Filter& filter, std::int64_t version) {
  Builder builder;
  builder.And(filter.deleted ? "r.deleted is not null" : "r.deleted is null");
  if (filter.from) builder.And("r.taken >= " + builder.Numbered(Nanoseconds(*filter.from)));
  if (filter.until) builder.And("r.taken < " + builder.Numbered(Nanoseconds(*filter.until)));
  builder.AndText("r.machine", filter.machine);
  builder.AndText("r.point", filter.point);
  builder.AndText("s.bench", filter.bench);
  if (!filter.tag.empty()) {
    std::string pattern = Within(TagLine(filter.tag));
    builder.And("lower(r.tags) like " + builder.Numbered(std::move(pattern)) + " escape '\\'");
  }
  if (!filter.text.empty()) builder.AndWithin(filter.text);
  if (filter.kind) {
    builder.And("r.kind = " +
                builder.Numbered(std::int64_t{*filter.kind == RecordKind::Time ? 1 : 0}));
  }
  builder.AndField(kOptionShift, filter.option);
  builder.AndField(kRangeShift, filter.range);
  builder.AndField(kWindowShift, filter.window);
  if (filter.alarm) {
    builder.And(std::string(*filter.alarm ? "" : "not ") +
                "(r.alarm_x <> 0 or r.alarm_y <> 0 or r.alarm_z <> 0)");
  }
  if (filter.simulated) {
    builder.And("s.simulated = " + builder.Numbered(std::int64_t{*filter.simulated ? 1 : 0}));
  }
  AndWide(builder, filter, version);
  return builder.Take();
}

}  // namespace kestrel::archive
