// A data log of known records.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "logging/data_log.h"
#include "logging/data_log_text.h"
#include "logging/reset_logging.h"
#include "numeric/runtime_error.h"
#include "record/capture_data.h"
#include "support/change_record.h"
#include "support/fake_clock.h"
#include "support/fake_log_view.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/scripted_loop.h"

namespace kestrel {

using Lines = std::vector<std::string>;

inline constexpr double kYellow = 0x00FFFF;
inline constexpr double kWhite = 0xFFFFFF;
inline constexpr const char* kFlagNames =
    "System Alarm Flag,Z-Axis Spectral Alarm 2,Y-Axis Spectral Alarm 2 ,X-Axis Spectral Alarm 2 ,"
    "Z-Axis Spectral Alarm 1,Y-Axis Spectral Alarm 1,X-Axis Spectral Alarm 1,DR,FMF,STD,"
    "Recording Escape ,SPI,FUF,VsH,VsL";

class DataLogFile : public testing::Test {
 protected:
  DataLogFile() {
    ResetLogging();
    record.conditions = {.supplyV = 3.3F, .temperatureC = 24.53F, .recordCount = 1};
    record.status.known = true;
    for (int i = 0; i < 512; ++i) {
      record.Of(Axis::X).raw(i) = i;
      record.Of(Axis::Y).raw(i) = -2 * i;
      record.Of(Axis::Z).raw(i) = 65535 - i;
      record.Of(Axis::X).data(i) = i * 0.0000153;
      record.Of(Axis::Y).data(i) = i * -0.5;
      record.Of(Axis::Z).data(i) = i / 3.0;
    }
  }
  ~DataLogFile() override { ResetLogging(); }

  // The file's lines without their line breaks; every line must end in one.
  [[nodiscard]] Lines Read(const std::string& path) const {
    Lines lines;
    std::string rest = files.contents.at(path);
    for (std::size_t end = rest.find("\r\n"); end != std::string::npos; end = rest.find("\r\n")) {
      lines.push_back(rest.substr(0, end));
      rest.erase(0, end + 2);
    }
    EXPECT_EQ(rest, "");
    return lines;
  }

  // Writes a file and gives its lines.
  Lines Write() {
    current.HandOver(record);
    log.WriteDataFile();
    return Read(log.LastFile().string());
  }

  // The run-time error of writing a file; empty when there is none.
  std::string ErrorOfWriting() {
    try {
      log.WriteDataFile();
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return "";
  }

  Record record;
  CurrentRecord current;
  FakeClock clock;
  ScriptedLoop loop{clock};
  MemoryFiles files;
  FixedLocale locale;
  Journal journal;
  FakeLogView view{journal};
  DataLog log{current, files, locale, loop, view};
};

}  // namespace kestrel
