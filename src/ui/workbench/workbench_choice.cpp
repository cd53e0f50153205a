// The settings file of the workbench.
// SPDX-License-Identifier: MIT
#include "ui/workbench/workbench_choice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <algorithm>
#include <chrono>

namespace kestrel {
namespace {

using baseline::Part;

QSettings File() {
  return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "workbench"};
}

QJsonValue JsonOf(const std::string& text) {
  return QString::fromStdString(text);
}
QJsonValue JsonOf(int number) {
  return number;
}
QJsonValue JsonOf(bool flag) {
  return flag;
}
QJsonValue JsonOf(RecordKind kind) {
  return static_cast<int>(kind);
}
QJsonValue JsonOf(baseline::Moment time) {
  return static_cast<qint64>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count());
}

void From(const QJsonValue& json, std::optional<std::string>& value) {
  if (json.isString()) value = json.toString().toStdString();
}
void From(const QJsonValue& json, std::optional<int>& value) {
  if (json.isDouble()) value = json.toInt();
}
void From(const QJsonValue& json, std::optional<bool>& value) {
  if (json.isBool()) value = json.toBool();
}
void From(const QJsonValue& json, std::optional<RecordKind>& value) {
  if (json.isDouble()) value = json.toInt() == 0 ? RecordKind::Spectrum : RecordKind::Time;
}
void From(const QJsonValue& json, std::optional<baseline::Moment>& value) {
  if (json.isDouble()) value = baseline::Moment(std::chrono::milliseconds(json.toInteger()));
}

// Calls `visit` with the name and the place of every part of a filter that may be missing.
template <typename Filter, typename Visit>
void EachOf(Filter& filter, const Visit& visit) {
  visit("from", filter.from);
  visit("until", filter.until);
  visit("machine", filter.machine);
  visit("point", filter.point);
  visit("bench", filter.bench);
  visit("kind", filter.kind);
  visit("option", filter.option);
  visit("range", filter.range);
  visit("window", filter.window);
  visit("alarm", filter.alarm);
  visit("simulated", filter.simulated);
}

QJsonObject JsonOf(const Part& part, const std::string& archive) {
  QJsonObject json{{"verdict", part.verdict == baseline::Verdict::Bad ? "bad" : "good"},
                   {"name", QString::fromStdString(part.name)},
                   {"every", static_cast<qint64>(part.every.count())},
                   {"tag", QString::fromStdString(part.filter.tag)},
                   {"text", QString::fromStdString(part.filter.text)}};
  EachOf(part.filter, [&json](const char* name, const auto& value) {
    if (value) json[QLatin1String(name)] = JsonOf(*value);
  });
  if (part.ids.empty()) return json;
  QJsonArray ids;
  for (const std::int64_t id : part.ids) ids.append(static_cast<qint64>(id));
  json["ids"] = ids;
  json["archive"] = QString::fromStdString(archive);
  return json;
}

// None where its records were named in another archive.
std::optional<Part> PartFrom(const QJsonObject& json, const std::string& archive) {
  const QString verdict = json["verdict"].toString();
  if (verdict != "good" && verdict != "bad") return std::nullopt;
  Part part{.verdict = verdict == "bad" ? baseline::Verdict::Bad : baseline::Verdict::Good,
            .name = json["name"].toString().toStdString(),
            .every = std::chrono::seconds(std::max<qint64>(0, json["every"].toInteger()))};
  part.filter.tag = json["tag"].toString().toStdString();
  part.filter.text = json["text"].toString().toStdString();
  EachOf(part.filter,
         [&json](const char* name, auto& value) { From(json[QLatin1String(name)], value); });
  if (!json.contains("ids")) return part;
  if (json["archive"].toString().toStdString() != archive) return std::nullopt;
  for (const QJsonValue& id : json["ids"].toArray()) part.ids.push_back(id.toInteger());
  return part;
}

double Within(const QVariant& value, double least, double most, double usual) {
  bool isNumber = false;
  const double number = value.toDouble(&isNumber);
  return isNumber && number >= least && number <= most ? number : usual;
}

}  // namespace

WorkbenchChoice ReadKeptWorkbench(const std::string& archive) {
  const QSettings file = File();
  WorkbenchChoice kept;
  const auto parts = QJsonDocument::fromJson(file.value("sets").toString().toUtf8());
  for (const QJsonValue& json : parts.array()) {
    if (auto part = PartFrom(json.toObject(), archive)) kept.parts.push_back(std::move(*part));
  }
  baseline::Rule& rule = kept.rule;
  rule.kind =
      static_cast<baseline::RuleKind>(static_cast<int>(Within(file.value("rule/kind"), 0, 2, 0)));
  rule.k = Within(file.value("rule/k"), kLeastK, kMostK, rule.k);
  rule.atLeastDb = Within(file.value("rule/atLeastDb"), 0, kMostDb, rule.atLeastDb);
  rule.faultAboveDb = Within(file.value("rule/faultAboveDb"), 0, kMostDb, rule.faultAboveDb);
  baseline::Judgement& judgement = kept.judgement;
  judgement.n = static_cast<int>(Within(file.value("judgement/n"), 1, kMostOf, 1));
  judgement.m = static_cast<int>(Within(file.value("judgement/m"), 1, judgement.n, 1));
  judgement.hysteresisDb =
      Within(file.value("judgement/hysteresisDb"), 0, kMostDb, judgement.hysteresisDb);
  kept.look.inDecibels = file.value("look/inDecibels", true).toBool();
  kept.look.showsNow = file.value("look/showsNow", true).toBool();
  kept.look.showsBad = file.value("look/showsBad", true).toBool();
  return kept;
}

void WriteKeptWorkbench(const WorkbenchChoice& choice, const std::string& archive) {
  QSettings file = File();
  QJsonArray parts;
  for (const Part& part : choice.parts) parts.append(JsonOf(part, archive));
  file.setValue("sets", QString::fromUtf8(QJsonDocument(parts).toJson(QJsonDocument::Compact)));
  file.setValue("rule/kind", static_cast<int>(choice.rule.kind));
  file.setValue("rule/k", choice.rule.k);
  file.setValue("rule/atLeastDb", choice.rule.atLeastDb);
  file.setValue("rule/faultAboveDb", choice.rule.faultAboveDb);
  file.setValue("judgement/m", choice.judgement.m);
  file.setValue("judgement/n", choice.judgement.n);
  file.setValue("judgement/hysteresisDb", choice.judgement.hysteresisDb);
  file.setValue("look/inDecibels", choice.look.inDecibels);
  file.setValue("look/showsNow", choice.look.showsNow);
  file.setValue("look/showsBad", choice.look.showsBad);
}

}  // namespace kestrel
