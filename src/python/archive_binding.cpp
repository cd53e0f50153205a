// The archive in Python: records found, read, amended and kept.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "archive/place.h"
#include "platform/system.h"
#include "python/archive_holder.h"
#include "python/bindings.h"
#include "python/interpreter_lock.h"
#include "python/raise.h"
#include "python/remarks.h"
#include "python/views.h"

namespace py = pybind11;

namespace kestrel::python {

archive::RemarksChange ChangeOf(const py::dict& told) {
  archive::RemarksChange change;
  const auto take = [&](const char* name, std::optional<std::string>& text) {
    if (told.contains(name)) text = told[name].cast<std::string>();
  };
  take("machine", change.machine);
  take("point", change.point);
  take("orientation", change.orientation);
  take("note", change.note);
  if (told.contains("rpm")) change.rpm = told["rpm"].cast<std::optional<double>>();
  if (told.contains("tags")) {
    change.tags = archive::CleanTags(told["tags"].cast<std::vector<std::string>>());
  }
  return change;
}

archive::Remarks RemarksOf(const py::dict& told) {
  return ChangeOf(told).AppliedTo({});
}

py::dict DictOf(const archive::Remarks& remarks) {
  py::dict told;
  told["machine"] = remarks.machine;
  told["point"] = remarks.point;
  told["orientation"] = remarks.orientation;
  told["rpm"] = remarks.rpm;
  told["note"] = remarks.note;
  told["tags"] = remarks.tags;
  return told;
}

archive::Filter FilterOf(const py::dict& told) {
  archive::Filter filter;
  const auto take = [&](const char* name, auto& value) {
    if (!told.contains(name)) return;
    value = told[name].cast<std::remove_reference_t<decltype(value)>>();
  };
  const auto moment = [&](const char* name, auto& value) {
    if (told.contains(name)) value = MomentOf(told[name].cast<std::int64_t>());
  };
  moment("since", filter.from);
  moment("until", filter.until);
  take("machine", filter.machine);
  take("point", filter.point);
  take("bench", filter.bench);
  take("tag", filter.tag);
  take("text", filter.text);
  take("option", filter.option);
  take("range", filter.range);
  take("window", filter.window);
  take("alarm", filter.alarm);
  take("simulated", filter.simulated);
  take("deleted", filter.deleted);
  if (told.contains("is_time")) {
    filter.kind = told["is_time"].cast<bool>() ? RecordKind::Time : RecordKind::Spectrum;
  }
  return filter;
}

namespace {

// id, record, remarks, program, bench, levels (RMS and peak in g, or None, of each axis), deleted.
py::tuple Told(archive::KeptRecord kept) {
  py::list levels;
  for (const auto& level : kept.levels) {
    if (level) {
      levels.append(py::make_tuple(level->rmsG, level->peakG));
    } else {
      levels.append(py::none());
    }
  }
  std::optional<std::int64_t> deleted;
  if (kept.deleted) deleted = NanosecondsOf(*kept.deleted);
  return py::make_tuple(kept.id, std::make_shared<Record>(std::move(kept.record)),
                        DictOf(kept.remarks), kept.program, kept.bench, levels, deleted);
}

using ArchiveClass = py::class_<HeldArchive>;

std::unique_ptr<HeldArchive> Opened(const std::string& place, bool isWritten) {
  const auto access = isWritten ? database::Access::ReadWrite : database::Access::ReadOnly;
  try {
    auto opened = [&] {
      const Unlocked unlocked;  // a server may take its time
      return std::make_unique<archive::Archive>(archive::Open({place}, access));
    }();
    return std::make_unique<HeldArchive>("archive", std::move(opened));
  } catch (const database::DatabaseError& error) {
    Raise("ArchiveError", error.what());
  }
}

archive::NewRecord NewOf(const Record& record, const py::dict& told) {
  return {.uid = archive::NewUid(),
          .record = record,
          .remarks = RemarksOf(told),
          .program = KESTREL_VERSION,
          .bench = System::ComputerName()};
}

std::int64_t Kept(HeldArchive& held, const std::shared_ptr<Record>& record, const py::dict& told) {
  const archive::NewRecord made = NewOf(*record, told);
  return held.Do([&](archive::Archive& archive) { return archive.Keep(made); });
}

// Records, each with its remarks.
void AllKept(HeldArchive& held,
             const std::vector<std::pair<std::shared_ptr<Record>, py::dict>>& records) {
  std::vector<archive::NewRecord> made;
  for (const auto& [record, told] : records) made.push_back(NewOf(*record, told));
  held.Do([&](archive::Archive& archive) { archive.KeepAll(made); });
}

// Eight bytes each: a million of them are no burden.
py::bytes IdsFound(HeldArchive& held, const py::dict& told) {
  const archive::Filter filter = FilterOf(told);
  HeldArchive::Use use(held);
  const auto ids = use.Do([&](archive::Archive& archive) { return archive.Find(filter); });
  return {reinterpret_cast<const char*>(ids.data()), ids.size() * sizeof(std::int64_t)};
}

py::object Found(HeldArchive& held, std::int64_t id) {
  HeldArchive::Use use(held);
  auto kept = use.Do([&](archive::Archive& archive) { return archive.Get(id); });
  if (!kept) return py::none();
  return Told(std::move(*kept));
}

py::list Listed(HeldArchive& held, const std::vector<std::int64_t>& ids) {
  HeldArchive::Use use(held);
  auto all = use.Do([&](archive::Archive& archive) { return archive.List(ids); });
  py::list told;
  for (archive::KeptRecord& kept : all) told.append(Told(std::move(kept)));
  return told;
}

void AddChanges(ArchiveClass& type) {
  using Ids = std::vector<std::int64_t>;
  type.def("keep", &Kept)
      .def("keep_all", &AllKept)
      .def("amend",
           [](HeldArchive& held, const Ids& ids, const py::dict& told) {
             std::vector<std::pair<std::int64_t, archive::RemarksChange>> changes;
             for (const auto id : ids) changes.emplace_back(id, ChangeOf(told));
             held.Do([&](archive::Archive& archive) { return archive.ChangeRemarks(changes); });
           })
      .def("delete",
           [](HeldArchive& held, const Ids& ids) {
             held.Do([&](archive::Archive& archive) {
               archive.Delete(ids, std::chrono::system_clock::now());
             });
           })
      .def("bring_back",
           [](HeldArchive& held, const Ids& ids) {
             held.Do([&](archive::Archive& archive) { archive.BringBack(ids); });
           })
      .def("remove", [](HeldArchive& held, const Ids& ids) {
        held.Do([&](archive::Archive& archive) { archive.Remove(ids); });
      });
}

}  // namespace

void BindArchive(py::module_& module) {
  ArchiveClass type(module, "Archive");
  type.def(py::init(&Opened))
      .def("find", &IdsFound)
      .def("list", &Listed)
      .def("get", &Found)
      .def("count", [](HeldArchive& held) {
        return held.Do([](archive::Archive& archive) { return archive.Count(); });
      });
  AddChanges(type);
  type.def("machines",
           [](HeldArchive& held) {
             return held.Do([](archive::Archive& archive) { return archive.Machines(); });
           })
      .def("points",
           [](HeldArchive& held, const std::string& machine) {
             return held.Do([&](archive::Archive& archive) { return archive.Points(machine); });
           })
      .def("damage",
           [](HeldArchive& held) {
             return held.Do([](archive::Archive& archive) { return archive.Damage(); });
           })
      .def("end", &HeldArchive::End)
      .def("close", &HeldArchive::Close)
      .def_property_readonly("is_open", &HeldArchive::IsOpen);
  module.def("usual_archive", [] { return archive::UsualPlace(System::Environment).text; });
  module.def("shown_place", [](const std::string& place) { return archive::Shown({place}); });
}

}  // namespace kestrel::python
