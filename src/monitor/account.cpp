// Accounts and texts as lines of JSON, and read back.
// SPDX-License-Identifier: MIT
#include "monitor/account.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>

#include "record/utc_time.h"

namespace kestrel::monitor {
namespace {

using Json = nlohmann::ordered_json;
using Doing = Account::Doing;

constexpr std::array<const char*, 4> kDoing{"waiting", "connecting", "capturing", "ending"};

Doing DoingOf(Next::Do what) {
  switch (what) {
    case Next::Do::Wait:
    case Next::Do::LookAtCount:
      return Doing::Waiting;
    case Next::Do::Connect:
      return Doing::Connecting;
    case Next::Do::End:
      return Doing::Ending;
    default:
      return Doing::Capturing;
  }
}

Json JsonOf(const std::vector<archive::JournalEntry>& entries) {
  Json list = Json::array();
  for (const archive::JournalEntry& entry : entries) {
    list.push_back({{"id", archive::TextOf(entry.uid)},
                    {"kind", entry.kind},
                    {"began", UtcText(entry.began)},
                    {"missed", entry.missed},
                    {"text", entry.text}});
  }
  return list;
}

std::vector<archive::JournalEntry> EntriesFrom(const Json& list) {
  std::vector<archive::JournalEntry> entries;
  for (const Json& each : list) {
    const auto uid = archive::UidFrom(each.at("id").get<std::string>());
    const auto began = UtcFrom(each.at("began").get<std::string>());
    if (!uid || !began) continue;
    entries.push_back({.uid = *uid,
                       .kind = each.at("kind").get<std::string>(),
                       .began = *began,
                       .missed = each.at("missed").get<std::int64_t>(),
                       .text = each.at("text").get<std::string>()});
  }
  return entries;
}

std::string Line(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Throws nlohmann::json::exception where members are missing or of another kind.
Account AccountFrom(const Json& json) {
  Account account;
  const std::string doing = json.at("doing").get<std::string>();
  for (std::size_t i = 0; i < kDoing.size(); ++i) {
    if (doing == kDoing.at(i)) account.doing = static_cast<Doing>(i);
  }
  account.isConnected = json.at("connected").get<bool>();
  if (!json.at("next_in_s").is_null()) account.nextIn = json.at("next_in_s").get<double>();
  if (!json.at("last_record").is_null()) {
    account.lastRecord = UtcFrom(json.at("last_record").get<std::string>());
  }
  account.records = json.at("records").get<std::int64_t>();
  account.unsafe = json.at("unsafe").get<std::int64_t>();
  account.missed = json.at("missed").get<std::int64_t>();
  account.incidents = EntriesFrom(json.at("incidents"));
  account.alarms = EntriesFrom(json.at("alarms"));
  return account;
}

}  // namespace

Account AccountOf(Monitor& monitor) {
  const Progress progress = monitor.State();
  Account account{.doing = DoingOf(progress.doing),
                  .isConnected = progress.isConnected,
                  .lastRecord = progress.lastRecord,
                  .records = progress.records,
                  .unsafe = progress.unsafe,
                  .missed = progress.missed,
                  .incidents = monitor.OpenIncidents(),
                  .alarms = monitor.StandingAlarms()};
  if (progress.nextIn) account.nextIn = std::chrono::duration<double>(*progress.nextIn).count();
  return account;
}

std::string LineOf(const Account& account) {
  Json json{{"doing", kDoing.at(static_cast<std::size_t>(account.doing))},
            {"connected", account.isConnected}};
  json["next_in_s"] = account.nextIn ? Json(*account.nextIn) : Json();
  json["last_record"] = account.lastRecord ? Json(UtcText(*account.lastRecord)) : Json();
  json["records"] = account.records;
  json["unsafe"] = account.unsafe;
  json["missed"] = account.missed;
  json["incidents"] = JsonOf(account.incidents);
  json["alarms"] = JsonOf(account.alarms);
  return Line(json);
}

std::string LineOf(const Said& said) {
  return Line({{"say", said.text}, {"trouble", said.isTrouble}});
}

Told ToldBy(std::string_view line) {
  const Json json = Json::parse(line, nullptr, false);
  if (!json.is_object()) return {};
  try {
    if (json.contains("say")) {
      return {.said = Said{json.at("say").get<std::string>(), json.at("trouble").get<bool>()}};
    }
    if (json.contains("doing")) return {.account = AccountFrom(json)};
  } catch (const Json::exception&) {  // another program's
  }
  return {};
}

std::vector<JournalRow> RowsOf(const std::vector<archive::JournalEntry>& journal,
                               const Account* account) {
  std::vector<JournalRow> rows;
  std::set<archive::Uid> told;
  const auto tell = [&](const std::vector<archive::JournalEntry>& entries) {
    for (const archive::JournalEntry& entry : entries) {
      if (told.insert(entry.uid).second) rows.push_back({entry, true});
    }
  };
  if (account != nullptr) {
    tell(account->incidents);
    tell(account->alarms);
  }
  for (const archive::JournalEntry& entry : journal) {
    if (told.contains(entry.uid)) continue;
    rows.push_back({entry, !entry.ended && account == nullptr});
  }
  std::ranges::stable_sort(rows, [](const JournalRow& a, const JournalRow& b) {
    return a.lasts != b.lasts ? a.lasts : a.entry.began > b.entry.began;
  });
  return rows;
}

}  // namespace kestrel::monitor
