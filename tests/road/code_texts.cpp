// Turns sensor words into the user's texts, one question a line, for check_code_texts.py.
// SPDX-License-Identifier: MIT

// The words take the whole road: frames, decoding, scaling, format.

#include <cstdlib>
#include <ios>
#include <iostream>
#include <sstream>
#include <string>

#include "acquisition/settings_exchange.h"
#include "numeric/number_format.h"
#include "plot/cursor.h"
#include "regmap/register_table.h"
#include "support/capture_bench.h"
#include "support/change_record.h"
#include "support/given.h"

namespace kestrel {
namespace {

class Texts : public CaptureBench {
 public:
  Texts() {
    const std::array buffers{address::kXBuf, address::kYBuf, address::kZBuf};
    for (const Axis axis : kAxes) {
      sensor.OnRead(buffers[Index(axis)], [this, axis] { return Word(axis); });
    }
  }
  void TestBody() override {}

  void Answer(const std::string& line, std::ostream& out) {
    std::istringstream question(line);
    std::string kind;
    question >> kind;
    if (kind == "register") return Register(question, out);
    if (kind == "cursor") return Cursor(question, out);
    if (kind == "peak") return Peak(question, out);
    Log(question, out);
  }

 private:
  // Both sides of the test work these out.
  int Word(Axis axis) {
    const int point = sensor.Word(address::kBufPntr);
    return (seed_ + static_cast<int>(Index(axis)) * 20011 + point * 25717) & 0xFFFF;
  }

  void Register(std::istream& question, std::ostream& out) {
    std::string name;
    int word = 0;
    question >> name >> word;
    std::int16_t row = 0;
    while (RegName[row] != name) ++row;
    sensor.Set(RegAddr[row], word);
    core.registers.ReadReg(row);
    const auto scaled = static_cast<double>(RegScaled);
    out << GeneralNumber(RegValue) << " " << GeneralNumber(RegScaled) << " "
        << OneToFourDecimals(scaled) << " " << FixedNumber(scaled, 4) << "\n";
    sensor.ClearFrames();
  }

  void Cursor(std::istream& question, std::ostream& out) {
    double bin = 0;
    double g = 0;
    std::int16_t option = 0;
    question >> option >> bin >> g;
    ChangeRecord(core.record, [option](Record& record) { record.settings.option = option; });
    desk.cursor.pic1_MouseMove(bin, g);
    out << cursorView.x << " " << cursorView.frequency << " " << cursorView.y << "\n";
  }

  void Peak(std::istream& question, std::ostream& out) {
    int recCtrl = 0;
    int code = 0;
    question >> recCtrl >> code;
    sensor.Set(address::kRecCtrl, recCtrl);
    gRecCtrl->ReadRecCtrl();
    sensor.Set(address::kAlmYPeak, code);
    alarms.ExpectPeaks(gRecCtrl->gLsb());
    alarms.DisplayPeakAlarms();
    out << alarmView.peak[Index(Axis::Y)] << "\n";
    sensor.ClearFrames();
  }

  void Log(std::istream& question, std::ostream& out) {
    int range = 0;
    int averages = 0;
    int supply = 0;
    int temperature = 0;
    int statusWord = 0;
    bool time = false;
    question >> locale.decimalMark >> Given(DataFormatLSB) >> time >> range >> averages >> supply >>
        temperature >> statusWord >> seed_;
    sensor.Set(address::kRecCtrl, range << 4);
    gRecCtrl->ReadRecCtrl();
    sensor.Set(address::kFftAvg, averages);
    settings.Read_FFTAVGS();
    sensor.Set(address::kSupplyOut, supply);
    sensor.Set(address::kTempOut, temperature);
    sensor.Set(address::kStatus, statusWord);
    status.ReadStatus("CmdReadStatus");
    cycle.SetRecordType(time ? 2 : 0);
    readoutView.dataLog = true;
    cycle.cmdReadBuffer_Click();
    out << readoutView.supply << " " << readoutView.temp << "\n"
        << files.contents.at(log.LastFile()) << "end\n";
    sensor.ClearFrames();
  }

  int seed_ = 0;
};

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  kestrel::Texts texts;
  for (std::string line; std::getline(std::cin, line);) texts.Answer(line, std::cout);
  return 0;
}
