// The list of all registers, as read and as written.
// SPDX-License-Identifier: MIT
#include "device/register_list.h"

#include <set>
#include <sstream>

#include "device/register_log.h"
#include "regmap/register_table.h"
#include "support/given.h"
#include "support/register_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

class RegisterList : public RegisterBench {
 protected:
  // A listing of a sensor that stays connected.
  RegisterListing List(const RegisterListing& before = {}) {
    const auto listing = ReadAllRegisters(core.registers, before);
    EXPECT_TRUE(listing.has_value());
    return listing.value_or(RegisterListing{});
  }

  static bool Has(const RegisterListing& listing, const std::string& line) {
    return ("\r\n" + listing.text).find("\r\n" + line + "\r\n") != std::string::npos;
  }

  static std::vector<std::int16_t> Changed(const RegisterListing& listing) {
    std::vector<std::int16_t> rows;
    for (const auto& line : listing.lines) {
      if (line.changed) rows.push_back(line.row);
    }
    return rows;
  }
};

TEST_F(RegisterList, BeginsWithItsHeading) {
  const std::string heading =
      "Name\t\tAddr\tHex\r\n--------------------\t---------\t---------\r\n"
      "ENDURANCE     \t0\t0000\r\n";
  EXPECT_EQ(List().text.substr(0, heading.size()), heading);
}

TEST_F(RegisterList, ReadsEveryReadableRegisterThatIsNotReservedInTheOrderOfTheTable) {
  Frames wanted;
  const auto read = [&](int address) { wanted = std::move(wanted) + ReadFrames(address); };
  for (int address = 0x00; address <= 0x38; address += 2) read(address);
  read(0x3C);
  for (int address = 0x40; address <= 0x50; address += 2) read(address);
  for (const int address : {0x52, 0x53, 0x54, 0x55, 0x56, 0x66, 0x70, 0x72, 0x74, 0x76}) {
    read(address);
  }
  List();
  EXPECT_EQ(TakeFrames(), wanted);
}

TEST_F(RegisterList, ShowsWordsWithFourDigitsAndAddressesWithAsManyAsTheyHave) {
  sensor.Set(address::kFftAvg, 0x00A);
  sensor.Set(address::kRecCtrl, 0x1030);
  const RegisterListing listing = List();
  EXPECT_TRUE(Has(listing, "FFT_AVG     \tE\t000A"));
  EXPECT_TRUE(Has(listing, "REC_CTRL     \t1C\t1030"));
}

TEST_F(RegisterList, ANegativeValueShowsTheWordThatTheRegisterHolds) {
  sensor.Set(0x02, 0xFFFE);
  EXPECT_TRUE(Has(List(), "X_NULL     \t2\tFFFE"));
}

// Only the significant bits: 4 of REC_PNTR, 15 of ALM_Y_MAG2, 8 of DIO_CTRL.
TEST_F(RegisterList, ShowsDecodedValues) {
  for (const int address : {0x12, 0x2C, 0x36}) sensor.Set(address, 0xFFFF);
  const RegisterListing listing = List();
  EXPECT_TRUE(Has(listing, "REC_PNTR     \t12\t000F"));
  EXPECT_TRUE(Has(listing, "ALM_Y_MAG2     \t2C\t7FFF"));
  EXPECT_TRUE(Has(listing, "DIO_CTRL     \t36\t00FF"));
}

TEST_F(RegisterList, TheWriteOnlyRegisterListsAsZero) {
  sensor.Set(0x3E, 0xFFFF);
  EXPECT_TRUE(Has(List(), "COMMAND     \t3E\t0000"));
}

TEST_F(RegisterList, LeavesReservedRegistersOut) {
  const RegisterListing listing = List();
  EXPECT_EQ(listing.lines.size(), 50U);
  for (const char* name : {"SCRATCH", "SIGNTR", "CHKSUM", "reserved"}) {
    EXPECT_EQ(listing.text.find(name), std::string::npos) << name;
  }
  EXPECT_EQ(RegisterEntry(row::SCRATCH_A), "reserved");
  EXPECT_EQ(RegisterEntry(row::CHKSUMU), "reserved");
  EXPECT_EQ(RegisterEntry(row::ST_CTRL), "ST_CTRL");
}

TEST_F(RegisterList, BringsNamesToTheirLengthInTheTableItselfAndOnlyOnce) {
  for (int listing = 0; listing < 3; ++listing) {
    List();
    EXPECT_EQ(RegName[row::REV], "REV______");
    EXPECT_EQ(RegName[row::DAY], "DAY______");
    EXPECT_EQ(RegName[row::YEAR], "YEAR______");
    EXPECT_EQ(RegName[row::MONTH], "MONTH");
    EXPECT_EQ(RegName[row::X_BUF], "X_BUF");
    EXPECT_EQ(RegName[row::REC_FLSH_CNT], "REC_FLSH_CN");
    EXPECT_EQ(RegName[row::TIME_STMP_L], "TIME_STMP_L");
  }
  EXPECT_TRUE(Has(List(), "REV______     \t52\t0000"));
  EXPECT_TRUE(Has(List(), "REC_FLSH_CN     \t8\t0000"));
}

TEST_F(RegisterList, BlanksAtTheEndOfANameAreNotListedButKept) {
  Given(RegName)[row::MONTH] = "MON    ";
  EXPECT_TRUE(Has(List(), "MON     \t54\t0000"));
  EXPECT_EQ(RegName[row::MONTH], "MON    ");
}

TEST_F(RegisterList, MarksWhatHasChangedSinceTheListBefore) {
  const RegisterListing first = List();
  EXPECT_EQ(Changed(first), std::vector<std::int16_t>{});
  sensor.Set(address::kFftAvg, 3);
  sensor.Set(address::kStatus, 0x80);
  const RegisterListing second = List(first);
  EXPECT_EQ(Changed(second), (std::vector<std::int16_t>{row::FFT_AVG, row::STATUS}));
  EXPECT_EQ(Changed(List(second)), std::vector<std::int16_t>{});
}

TEST_F(RegisterList, TheNoteNamesWhatHasChanged) {
  const RegisterListing first = List();
  EXPECT_EQ(ListingNote(first, "10:20"), "50 registers, read at 10:20.");
  sensor.Set(address::kStatus, 0x80);
  EXPECT_EQ(ListingNote(List(first), "10:21"), "50 registers, read at 10:21. Changed: STATUS.");
  for (int address = 0x20; address <= 0x2E; address += 2) sensor.Set(address, 1);
  EXPECT_EQ(ListingNote(List(first), "10:22"),
            "50 registers, read at 10:22. Changed: ALM_F_LOW, ALM_F_HIGH, ALM_X_MAG1, ALM_Y_MAG1, "
            "ALM_Z_MAG1, ALM_X_MAG2 and 3 more.");
}

// 49 registers are read, each with three requests to the adapter.
TEST_F(RegisterList, ASensorLostAtAnyRequestGivesNoListOneMessageAndNoNewNames) {
  constexpr int kRequests = 49 * 3;
  const int before = sensor.Requests();
  ASSERT_TRUE(ReadAllRegisters(core.registers, {}).has_value());
  ASSERT_EQ(sensor.Requests() - before, kRequests);
  for (int request = 1; request <= kRequests; ++request) {
    SCOPED_TRACE(request);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    BuildRegisterTable();
    messages.Clear();
    sensor.UnplugAtRequest(request);
    EXPECT_FALSE(ReadAllRegisters(core.registers, {}).has_value());
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(RegName[row::REV], "REV");
  }
}

// The file, read again line by line, tells each register's address and the word that it held.
TEST_F(RegisterList, TheLogFileHoldsWhateverTheRegistersHeld) {
  WithSeeds(20, [this](Random& random) {
    for (int address = 0; address < 0x78; address += 2) sensor.Set(address, random.Word());
    const auto file = WriteRegisterLog(files, locale, List().text);
    std::istringstream lines(files.contents.at(file));
    std::set<int> addresses;
    for (std::string line; std::getline(lines, line);) {
      ASSERT_TRUE(line.ends_with("\r"));
      std::string name;
      int address = 0;
      int word = 0;
      std::istringstream cells(line);
      if (!(cells >> name >> std::hex >> address >> word)) continue;  // the heading
      ASSERT_TRUE(addresses.insert(address).second) << line;
      const int held = sensor.Word(address);
      int shown = held;
      if (name == "REC_PNTR") shown &= 0xF;
      if (name == "DIO_CTRL") shown &= 0xFF;
      if (name == "ALM_Y_MAG2") shown &= 0x7FFF;
      if (name == "COMMAND") shown = 0;
      EXPECT_EQ(word, shown) << line;
    }
    EXPECT_EQ(addresses.size(), 50U);
    sensor.ClearFrames();
  });
}

}  // namespace
}  // namespace kestrel
