// Every step of a station with a fault at every request: it is right, or it fails and says so.
// SPDX-License-Identifier: MIT
#include "alarms/band_table.h"
#include "station_bench.h"
#include "support/given.h"

namespace kestrel {
namespace {

using testing::IsEmpty;
using testing::Not;

BandTable SomeBands() {
  BandTable table;
  for (int band = 1; band <= 6; ++band) {
    table(kFLowField, band, 0) = 30 * band;
    table(kFHighField, band, 0) = 30 * band + 20;
    table(Alarm1Field(Axis::Z), band, 0) = 1000 + band;
  }
  return table;
}

// A step; what a step that gave a value left or told is compared as a text.
struct Step {
  const char* name;
  // Nothing where it was done and is right.
  std::optional<Failure> (*run)(Station& station, std::string& value);
};
void PrintTo(const Step& step, std::ostream* out) {
  *out << step.name;
}

template <typename Value>
std::optional<Failure> WhyNot(const Result<Value>& result) {
  if (result) return std::nullopt;
  return result.Why();
}

const std::vector<Step> kSteps{
    {"Connect", [](Station& station, std::string&) { return WhyNot(station.Connect()); }},
    {"ReadRegister",
     [](Station& station, std::string& value) {
       const auto read = station.ReadRegister("PROD_ID");
       if (read) value = std::to_string(read->value);
       return WhyNot(read);
     }},
    {"WriteRegister",
     [](Station& station, std::string&) { return WhyNot(station.WriteRegister("FFT_AVG", 17)); }},
    {"ReadRegisters",
     [](Station& station, std::string& value) {
       const auto read = station.ReadRegisters();
       if (read) value = std::to_string(read->size());
       return WhyNot(read);
     }},
    {"ReadState", [](Station& station, std::string&) { return WhyNot(station.ReadState()); }},
    {"ClearState", [](Station& station, std::string&) { return WhyNot(station.ClearState()); }},
    {"Configure",
     [](Station& station, std::string& value) {
       RecordSetup change;
       change.range = 1;
       change.averages = 9;
       const auto setup = station.Records().Configure(change);
       if (setup) value = std::to_string(*setup->range) + " " + std::to_string(*setup->averages);
       return WhyNot(setup);
     }},
    {"ReadStored",
     [](Station& station, std::string& value) {
       const auto record = station.Records().ReadStored(0, RecordKind::Spectrum);
       for (int i = 0; record && i < 256; ++i) {
         for (const Axis axis : kAxes) value += std::to_string(record->Of(axis).raw(i)) + " ";
       }
       return WhyNot(record);
     }},
    {"ReadBands",
     [](Station& station, std::string& value) {
       const auto bands = station.Bands().Read();
       if (bands) value = *bands == SomeBands() ? "the same" : "others";
       return WhyNot(bands);
     }},
    {"WriteBands",
     [](Station& station, std::string& value) {
       const auto written = station.Bands().Write(SomeBands());
       if (written) value = *written;
       return WhyNot(written);
     }},
};

struct Loss {
  const char* name;
  UsbFault fault;
};
void PrintTo(const Loss& loss, std::ostream* out) {
  *out << loss.name;
}

class StepsWithFaults : public StationBench,
                        public testing::WithParamInterface<std::tuple<Step, Loss>> {
 protected:
  // A record in its flash and bands, so that there is something to read.
  StepsWithFaults() {
    Station& station = Connected();
    EXPECT_TRUE(station.WriteRegister("REC_CTRL", 0x1038));  // 70 g, every record kept
    EXPECT_TRUE(station.Records().Capture());
    EXPECT_TRUE(station.Bands().Write(SomeBands()));
  }
};

TEST_P(StepsWithFaults, AreRightOrFailWithTheReasonAndCanBeTakenAgain) {
  const auto& [step, loss] = GetParam();
  std::string right;
  usb.FailFrom(1 << 30);  // counts
  ASSERT_FALSE(step.run(TheStation(), right));
  const int requests = usb.Requests();
  int met = 0;
  int failed = 0;
  for (int request = 1; request <= requests; request += 1 + request / 12) {
    SCOPED_TRACE(request);
    usb.FaultAt(request, loss.fault, [this, unplugs = loss.fault == UsbFault::Unplugged] {
      if (unplugs) hardware.Adapter().Unplug(0);
    });
    std::string value;
    const auto failure = step.run(TheStation(), value);
    const bool isMet = usb.Met() != UsbRequest::None;
    usb.Mend();
    hardware.Adapter().Replug(0);
    if (failure) {
      ASSERT_TRUE(isMet) << failure->text;
      ASSERT_EQ(failure->kind, FailureKind::NoSensor) << failure->text;
      ASSERT_THAT(failure->text, Not(IsEmpty()));
      ++failed;
    } else {
      ASSERT_EQ(value, right);
    }
    if (isMet) ++met;
    ASSERT_TRUE(TheStation().Connect());
    std::string again;
    ASSERT_FALSE(step.run(TheStation(), again));
    ASSERT_EQ(again, right);
    static_cast<void>(TheStation().TakeNotes());
  }
  EXPECT_GE(met, 2);
  EXPECT_GE(failed, 1);
}

INSTANTIATE_TEST_SUITE_P(Each, StepsWithFaults,
                         testing::Combine(testing::ValuesIn(kSteps),
                                          testing::Values(Loss{"Absent", UsbFault::Absent},
                                                          Loss{"Short", UsbFault::Short},
                                                          Loss{"Late", UsbFault::Late},
                                                          Loss{"Unplugged", UsbFault::Unplugged})),
                         [](const auto& tested) {
                           return std::string(std::get<0>(tested.param).name) +
                                  std::get<1>(tested.param).name;
                         });

}  // namespace
}  // namespace kestrel
