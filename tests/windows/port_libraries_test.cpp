// The port libraries: loaded when needed, and in words why one cannot be.
// SPDX-License-Identifier: MIT
#include "platform/windows/port_libraries.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "platform/system_files.h"

#include "recorder.h"

namespace kestrel {
namespace {

std::vector<PortCall> CallsOf(const char* library) {
  const auto calls = reinterpret_cast<CallsFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), "Calls")));
  const PortCall* first = nullptr;
  const int count = calls(&first);
  return {first, first + count};
}

TEST(PortLibrariesTest, EveryAccessGoesToTheLibraries) {
  PortLibraries port;
  EXPECT_EQ(GetModuleHandleA("win95io.dll"), nullptr) << "loaded before it was needed";
  port.giveio();
  port.vbOut(888, 5);
  EXPECT_EQ(port.vbInp(889), 889 & 0xFF);
  port.vbOut(888, 7);
  EXPECT_EQ(CallsOf("giveio.dll").size(), 1U);
  const std::vector<PortCall> calls = CallsOf("win95io.dll");
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0].port, 888);
  EXPECT_EQ(calls[0].value, 5);
  EXPECT_EQ(calls[1].port, 889);
  EXPECT_EQ(calls[1].value, -1);
  EXPECT_EQ(calls[2].value, 7);
}

TEST(PortLibrariesTest, TheLibrariesAreGivenBack) {
  {
    PortLibraries port;
    port.giveio();
    EXPECT_NE(GetModuleHandleA("win95io.dll"), nullptr);
  }
  EXPECT_EQ(GetModuleHandleA("win95io.dll"), nullptr);
  EXPECT_EQ(GetModuleHandleA("giveio.dll"), nullptr);
}

std::string Content(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

// A library in the program's folder while it exists.
class LibraryFile {
 public:
  LibraryFile(const std::string& name, const std::string& content)
      : path_(SystemFiles().ProgramFolder() / name) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~LibraryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  LibraryFile(const LibraryFile&) = delete;
  LibraryFile& operator=(const LibraryFile&) = delete;

 private:
  std::filesystem::path path_;
};

// The library of these tests, marked as made for the 32-bit processor.
std::string ThirtyTwoBitLibrary() {
  std::string content = Content(SystemFiles().ProgramFolder() / "win95io.dll");
  IMAGE_DOS_HEADER start{};
  std::memcpy(&start, content.data(), sizeof start);
  const WORD machine = IMAGE_FILE_MACHINE_I386;
  std::memcpy(content.data() + start.e_lfanew + sizeof(DWORD), &machine, sizeof machine);
  return content;
}

TEST(PortLibrariesTest, WithBothLibrariesThereIsNoFault) {
  PortLibraries port;
  EXPECT_EQ(port.Fault(), "");
  EXPECT_TRUE(port.IsHeld(888));
}

TEST(PortLibrariesTest, EachLibraryThatIsMissingIsNamed) {
  PortLibraries port(
      {.ports = "no ports.dll", .access = "no access.dll", .common = "no common.dll"});
  EXPECT_EQ(port.Fault(),
            "no ports.dll was not found. Put it into the program's folder.\n"
            "no access.dll was not found. Put it into the program's folder.\n"
            "no common.dll, a port library for 64-bit programs, can be used in their place.");
  EXPECT_FALSE(port.IsHeld(888));
  port.giveio();
  port.vbOut(888, 5);
  EXPECT_EQ(port.vbInp(889), 0xFF);
}

TEST(PortLibrariesTest, ALibraryForThirtyTwoBitProgramsIsToldAsSuch) {
  const LibraryFile file("other kind.dll", ThirtyTwoBitLibrary());
  PortLibraries port(
      {.ports = "other kind.dll", .access = "giveio.dll", .common = "no common.dll"});
  EXPECT_EQ(port.Fault(),
            "other kind.dll is a library for 32-bit programs, and this program is a 64-bit one. "
            "Put the 64-bit library into the program's folder, or use the USB adapter.\n"
            "no common.dll, a port library for 64-bit programs, can be used in their place.");
}

TEST(PortLibrariesTest, AFileThatIsNoLibraryIsTold) {
  const LibraryFile file("damaged.dll", std::string(5000, 'x'));
  PortLibraries port({.ports = "damaged.dll", .access = "giveio.dll", .common = "damaged.dll"});
  EXPECT_EQ(
      port.Fault(),
      "damaged.dll is damaged or made for another kind of program. Put the library for 64-bit "
      "programs into the program's folder.\n"
      "damaged.dll is damaged or made for another kind of program. Put the library for 64-bit "
      "programs into the program's folder.");
}

TEST(PortLibrariesTest, AnotherLibraryOfThisNameIsTold) {
  PortLibraries port({.ports = "giveio.dll", .access = "win95io.dll", .common = "no common.dll"});
  EXPECT_EQ(
      port.Fault(),
      "giveio.dll has no function vbOut: it is another library of the same name. Put the right "
      "one into the program's folder.\n"
      "giveio.dll has no function vbInp: it is another library of the same name. Put the right "
      "one into the program's folder.\n"
      "win95io.dll has no function giveio: it is another library of the same name. Put the right "
      "one into the program's folder.\n"
      "no common.dll, a port library for 64-bit programs, can be used in their place.");
}

// What does not fit this program, or is not there, is made up for by the common library.
class CommonLibrary : public testing::Test {
 protected:
  ~CommonLibrary() override { _putenv("KESTREL_TEST_NO_DRIVER="); }

  PortLibraries port{{.ports = "no ports.dll", .access = "no access.dll"}};
};

TEST_F(CommonLibrary, TakesThePlaceOfLibrariesThatCannotBeUsed) {
  EXPECT_EQ(port.Fault(), "");
  EXPECT_TRUE(port.IsHeld(888));
  EXPECT_TRUE(port.BringsDriver());
  port.giveio();
  port.vbOut(888, 5);
  EXPECT_EQ(port.vbInp(889), 889 & 0xFF);
  const std::vector<PortCall> calls = CallsOf("inpoutx64.dll");
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].port, 888);
  EXPECT_EQ(calls[0].value, 5);
  EXPECT_EQ(calls[1].port, 889);
}

TEST_F(CommonLibrary, IsLeftAloneWhereTheOthersCanBeUsed) {
  PortLibraries both;
  EXPECT_EQ(both.Fault(), "");
  EXPECT_FALSE(both.BringsDriver());
  EXPECT_EQ(GetModuleHandleA("inpoutx64.dll"), nullptr);
}

TEST_F(CommonLibrary, WithoutItsDriverIsNoHelpAndSaysSo) {
  _putenv("KESTREL_TEST_NO_DRIVER=1");
  EXPECT_EQ(port.Fault(),
            "no ports.dll was not found. Put it into the program's folder.\n"
            "no access.dll was not found. Put it into the program's folder.\n"
            "inpoutx64.dll is there, but its driver is not installed. Start the program as "
            "administrator once to install it.");
  EXPECT_FALSE(port.IsHeld(888));
  EXPECT_FALSE(port.BringsDriver());
  EXPECT_EQ(port.vbInp(889), 0xFF);
}

}  // namespace
}  // namespace kestrel
