// Every program-wide name has a start value that a reset restores; no name is left out.
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "support/given.h"
#include "support/register_bench.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

struct Name {
  std::string name;
  std::function<void()> change;
  std::function<bool()> isAtStart;
};

// A name, its start value and another value.
template <typename Variable, typename Value>
Name Plain(const char* name, const Variable& variable, Value start, Value other) {
  return {name, [&variable, other] { Given(variable) = static_cast<Variable>(other); },
          [&variable, start] { return variable == static_cast<Variable>(start); }};
}

#define KESTREL_PLAIN(variable, start, other) Plain(#variable, variable, start, other)

template <typename Column, typename Value>
Name Filled(const char* name, const Column& column, Value empty, Value other) {
  return {name, [&column, other] { Given(column)[0] = Given(column)[85] = other; },
          [&column, empty] { return column[0] == empty && column[85] == empty; }};
}

#define KESTREL_COLUMN(column, empty, other) Filled(#column, column, empty, other)

// A name for reading only: a record handed over changes it.
template <typename Value>
Name OfRecord(const char* name, const Value& value) {
  return {name,
          [] {
            Record record;
            record.kind = RecordKind::Time;
            record.settings.option = 3;
            record.lsbWeight = 1;
            record.scaledRange = 3;
            record.conditions = {.supplyV = 3, .temperatureC = 25, .recordCount = 1};
            for (AxisRecord& axis : record.axes) axis.raw(511) = axis.data(0) = 1;
            NameRecord(record);
          },
          [&value, start = value] { return value == start; }};
}

#define KESTREL_OF_RECORD(name) OfRecord(#name, name)

Name SpiFrames(const char* name, const FrameBuffer& buffer) {
  return {name, [&buffer] { Given(buffer)(1) = Given(buffer)(16) = 1; },
          [&buffer] { return buffer(1) == 0 && buffer(16) == 0; }};
}

std::vector<Name> StateNames() {
  return {KESTREL_PLAIN(InterfaceType, 0, 2),
          KESTREL_PLAIN(PortAddress, 0, 888),
          KESTREL_PLAIN(ProductNumber, 0, 31407),
          KESTREL_PLAIN(PortReady, false, true),
          KESTREL_PLAIN(StopSpiLoop, true, false),
          KESTREL_PLAIN(UsbPresent, false, true),
          KESTREL_PLAIN(UsbCsPerWord, true, false),
          KESTREL_PLAIN(UsbSpiDelay, 1, 5),
          KESTREL_PLAIN(UsbSpiBits, 120, 1),
          KESTREL_PLAIN(UsbSpiSetupValue, 25, 1),
          KESTREL_PLAIN(SystemName, "WinNT", "Win95"),
          KESTREL_PLAIN(clrRed, 0, 1),
          KESTREL_PLAIN(clrGreen, 0, 1),
          KESTREL_PLAIN(clrYellow, 0, 1),
          KESTREL_PLAIN(clrAmber, 0, 1),
          KESTREL_PLAIN(clrMagenta, 0, 1),
          KESTREL_PLAIN(clrCyan, 0, 1),
          KESTREL_PLAIN(LoopsPer10us, 0, 1),
          KESTREL_PLAIN(DelayCalibrated, false, true),
          KESTREL_PLAIN(MinimumDelay, 0, 1),
          KESTREL_PLAIN(MinimumDelayCount, 0, 1),
          KESTREL_PLAIN(DelayReport, "", "report"),
          KESTREL_PLAIN(DelayActive, 0, 1),
          KESTREL_PLAIN(PlotScale, 0, 2)};
}

std::vector<Name> TransportNames() {
  return {KESTREL_PLAIN(RegValue, 0, 1),
          KESTREL_PLAIN(RegScaled, 0, 1),
          KESTREL_PLAIN(RegLowByte, 0, 1),
          KESTREL_PLAIN(RegHighByte, 0, 1),
          KESTREL_PLAIN(RegBit15, 0, 1),
          KESTREL_PLAIN(RegBit14, 0, 1),
          KESTREL_PLAIN(LptWord, 0, 1),
          KESTREL_PLAIN(SpiWordCount, 0, 1),
          KESTREL_PLAIN(AdapterCount, 0, 1),
          KESTREL_PLAIN(SelectedAdapterNumber, -1, 2),
          SpiFrames("SpiTx", SpiTx),
          SpiFrames("SpiRx", SpiRx),
          {"AdapterRecords", [] { Given(AdapterRecords)[3].present = true; },
           [] { return !AdapterRecords[3].present; }},
          {"NameFindings", [] { Given(NameFindings)[3].opened = true; },
           [] { return !NameFindings[3].opened; }},
          {"SelectedAdapter", [] { Given(SelectedAdapter).deviceName = "Ezusb-1"; },
           [] { return SelectedAdapter.deviceName.empty(); }}};
}

std::vector<Name> TableNames() {
  std::vector<Name> names{KESTREL_COLUMN(RegName, std::string(), std::string("NAME")),
                          KESTREL_COLUMN(RegAddr, 0, 1),
                          KESTREL_COLUMN(RegGroup, std::uint8_t{0}, std::uint8_t{1}),
                          KESTREL_COLUMN(RegBits, std::int16_t{0}, std::int16_t{1}),
                          KESTREL_COLUMN(RegSigned, false, true),
                          KESTREL_COLUMN(RegReadable, false, true),
                          KESTREL_COLUMN(RegWritable, false, true),
                          KESTREL_COLUMN(RegScale, 0.0F, 1.0F),
                          KESTREL_COLUMN(RegOffset, 0.0F, 1.0F),
                          KESTREL_COLUMN(RegReserved, false, true),
                          KESTREL_COLUMN(RegKeepBit15, false, true),
                          KESTREL_COLUMN(RegKeepBit14, false, true),
                          KESTREL_PLAIN(RegCount, 0, 57)};
#define KESTREL_ROW_NAME(name) names.push_back(Plain("row::" #name, row::name, -1, 5));
  KESTREL_REGISTER_NAMES(KESTREL_ROW_NAME)
#undef KESTREL_ROW_NAME
  return names;
}

std::vector<Name> CaptureNames() {
  return {KESTREL_OF_RECORD(DataX),
          KESTREL_OF_RECORD(DataY),
          KESTREL_OF_RECORD(DataZ),
          KESTREL_OF_RECORD(RawX),
          KESTREL_OF_RECORD(RawY),
          KESTREL_OF_RECORD(RawZ),
          KESTREL_OF_RECORD(Buff),
          KESTREL_OF_RECORD(CaptureType),
          KESTREL_OF_RECORD(LsbWeight),
          KESTREL_OF_RECORD(RangeSetting),
          KESTREL_OF_RECORD(CaptSupply),
          KESTREL_OF_RECORD(CaptTemp),
          {"StatusFlagText", [] { NameStatus({.word = 1, .known = true}); },
           [] { return StatusFlagText == std::array<std::string, kStatusFlags>{}; }},
          {"AvgExponent", [] { NoteAverages(8); }, [] { return AvgExponent == 0; }},
          {"AlarmBandTable", [] { Given(AlarmBandTable)(0, 1, 0) = 7; },
           [] { return AlarmBandTable == BandTable{}; }},
          KESTREL_PLAIN(DataLogIndex, 1, 7),
          KESTREL_PLAIN(DataFormatLSB, false, true),
          KESTREL_PLAIN(DataLogName, "", "pump")};
}

// The models need registers to read; those of a bench serve, which outlives their use here.
std::vector<Name> ModelNames(RegisterAccess& registers) {
  return {{"gRecCtrl", [&] { MakeRecCtrl(registers); }, [] { return gRecCtrl == nullptr; }},
          {"gAlmCtrl", [&] { MakeAlmCtrl(registers); }, [] { return gAlmCtrl == nullptr; }},
          {"gRecInfo", [&] { MakeRecInfo(registers); }, [] { return gRecInfo == nullptr; }}};
}

// The name that a line declares as program-wide, "extern <type> <name>;"; empty for any other line.
std::string DeclaredName(const std::string& line) {
  const std::size_t end = line.find(';');
  if (line.rfind("extern ", 0) != 0 || end == std::string::npos) return "";
  const std::size_t blank = line.rfind(' ', end);
  return line.substr(blank + 1, end - blank - 1);
}

// The names that the headers of all folders declare.
std::set<std::string> DeclaredNames() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(KESTREL_SOURCE_FOLDER)) {
    if (entry.path().extension() != ".h") continue;
    std::ifstream header(entry.path());
    for (std::string line; std::getline(header, line);) {
      if (const std::string name = DeclaredName(line); !name.empty()) names.insert(name);
    }
  }
  return names;
}

class Reset : public RegisterBench {
 protected:
  Reset() : RegisterBench(ResetProgram) {
    for (const auto& part : {StateNames(), TransportNames(), TableNames(), CaptureNames(),
                             ModelNames(core.registers)}) {
      names.insert(names.end(), part.begin(), part.end());
    }
  }

  std::vector<Name> names;
};

TEST_F(Reset, RestoresEveryName) {
  for (const Name& name : names) {
    name.change();
    EXPECT_FALSE(name.isAtStart()) << name.name;
  }
  ResetProgram();
  for (const Name& name : names) EXPECT_TRUE(name.isAtStart()) << name.name;
}

TEST_F(Reset, OfTheDevicesLayerLeavesOnlyWhatIsAbove) {
  for (const Name& name : names) name.change();
  ResetDevice();
  std::set<std::string> left;
  for (const Name& name : names) {
    if (!name.isAtStart()) left.insert(name.name);
  }
  EXPECT_EQ(left, (std::set<std::string>{"AlarmBandTable", "DataFormatLSB", "DataLogIndex",
                                         "DataLogName", "DelayActive"}));
}

TEST_F(Reset, KnowsEveryNameThatAHeaderDeclares) {
  std::set<std::string> known;
  for (const Name& name : names) {
    if (name.name.rfind("row::", 0) != 0) known.insert(name.name);
  }
  EXPECT_EQ(DeclaredNames(), known);
}

}  // namespace
}  // namespace kestrel
