// Writes sample records in every format, and what readers have to find in them.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "exchange/exported.h"
#include "exchange/facts.h"
#include "exchange/noted_records.h"
#include "exchange/wire_vcd.h"
#include "support/seeds.h"

namespace kestrel::exchange {
namespace {

void Write(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

// Hexadecimal floating point: no digit is lost on the way.
void Put(std::FILE* out, const char* name, std::size_t number, std::span<const double> values) {
  std::fprintf(out, "%s %zu", name, number);
  for (const double value : values) std::fprintf(out, " %a", value);
  std::fprintf(out, "\n");
}

void Expect(std::FILE* out, const std::vector<NotedRecord>& records) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& record = records[i].record;
    std::fprintf(out, "kind %zu %s\n", i, record.kind == RecordKind::Time ? "time" : "spectrum");
    const double step = StepOf(record);
    Put(out, "step", i, std::span(&step, 1));
    Put(out, "lsb", i, std::span(&record.lsbWeight, 1));
    for (const Axis axis : kAxes) {
      const std::string name(1, Letter(axis));
      Put(out, (name + "_data").c_str(), i, record.Values(axis));
      Put(out, (name + "_raw").c_str(), i, record.Of(axis).raw.First(record.Points()));
    }
  }
}

// 0 when everything was written.
int WriteAll(const std::filesystem::path& folder, const std::string& name,
             const std::vector<NotedRecord>& records) {
  std::FILE* expected = std::fopen((folder / (name + ".expected")).c_str(), "w");
  if (expected == nullptr) return 1;
  Expect(expected, records);
  std::fclose(expected);
  for (const ExportFormat format : kExportFormats) {
    const auto bytes = Exported(records, format);
    if (bytes) {
      Write(folder / (name + "." + NameOf(format)), *bytes);
    } else if (format != ExportFormat::Wav) {
      std::fprintf(stderr, "%s: %s\n", name.c_str(), bytes.Why().Text().c_str());
      return 1;
    }
  }
  return 0;
}

// Every word that a sensor can say, at the ends of its range too.
NotedRecord Extreme() {
  NotedRecord noted = TimeNoted(3);
  noted.note = {};
  for (const Axis axis : kAxes) {
    for (int i = 0; i < 512; ++i) {
      noted.record.Of(axis).raw(i) = i == 0   ? -32768
                                     : i == 1 ? 32767
                                              : (i * 127 * 61) % 65536 - 32768;
    }
  }
  noted.record = Rescaled(noted.record, 3);
  return noted;
}

// Random words, some under one chip select, with pauses between; a word to and from the sensor a
// line.
void WriteWire(const std::filesystem::path& folder) {
  Random random(1);
  std::vector<WireFrame> frames;
  std::string expected;
  for (int i = 0; i < 200; ++i) {
    WireFrame frame{.at = std::chrono::microseconds(40 * i),
                    .mosi = static_cast<std::uint16_t>(random.Word()),
                    .miso = static_cast<std::uint16_t>(random.Word()),
                    .selectedOn = random.OneIn(3)};
    expected += std::to_string(frame.mosi) + " " + std::to_string(*frame.miso) + "\n";
    frames.push_back(frame);
  }
  frames.back().selectedOn = false;
  Write(folder / "wire.vcd", *WireVcd(frames));
  Write(folder / "wire.words", expected);
}

}  // namespace
}  // namespace kestrel::exchange

int main(int count, char** arguments) {
  using namespace kestrel::exchange;
  if (count != 2) return 2;
  const std::filesystem::path folder = arguments[1];
  int failed = 0;
  for (int option = 0; option < 4; ++option) {
    failed |= WriteAll(folder, "time" + std::to_string(option), {TimeNoted(option)});
    failed |= WriteAll(folder, "spectrum" + std::to_string(option), {SpectrumNoted(option)});
  }
  failed |= WriteAll(folder, "extreme", {Extreme()});
  failed |= WriteAll(folder, "many", {SpectrumNoted(1), TimeNoted(2), Extreme(), SpectrumNoted(3)});
  WriteWire(folder);
  return failed;
}
