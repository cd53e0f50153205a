// Registry, batch file and processes of the driver's set-up.
// SPDX-License-Identifier: MIT
#include "platform/windows/service_registry.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/system_files.h"
#include "seams/path_text.h"
#include "support/recording_messages.h"
#include "transport/port_driver.h"

namespace kestrel {
namespace {

constexpr const char* kKey = "SOFTWARE\\KestrelTest";
constexpr const char* kServiceKey = "SYSTEM\\CurrentControlSet\\Services\\giveio";

std::string Content(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

class ServiceRegistryTest : public testing::Test {
 protected:
  ServiceRegistryTest() { Clean(); }
  ~ServiceRegistryTest() override { Clean(); }

  void Clean() {
    for (const char* key : {kKey, kServiceKey}) RegDeleteKeyA(HKEY_LOCAL_MACHINE, key);
    for (const char* name : {"instdrv2.txt", "temp.bat"}) {
      std::filesystem::remove(SystemFiles().ProgramFolder() / name);
    }
  }

  PortLibraries libraries;
  DeviceLocks locks{{std::filesystem::temp_directory_path()}, [] { return "kestrel"; }};
  LockedPort port{libraries, locks};
  ServiceRegistry service{libraries, port};
};

TEST_F(ServiceRegistryTest, WhatIsNotThereReadsAsNothing) {
  EXPECT_EQ(service.ReadRegistryValue(kKey, "Start"), "");
  service.WriteRegistryValue(kKey, "Other", kRegistryString, "x");
  EXPECT_EQ(service.ReadRegistryValue(kKey, "Start"), "");
}

TEST_F(ServiceRegistryTest, KeepsTextsAndNumbers) {
  service.WriteRegistryValue(kKey, "Text", kRegistryString, "two words");
  service.WriteRegistryValue(kKey, "Number", kRegistryNumber, "2");
  service.WriteRegistryValue(kKey, "Large", kRegistryNumber, "4294967295");
  EXPECT_EQ(service.ReadRegistryValue(kKey, "Text"), "two words");
  EXPECT_EQ(service.ReadRegistryValue(kKey, "Number"), "2");
  EXPECT_EQ(service.ReadRegistryValue(kKey, "Large"), "4294967295");
}

TEST_F(ServiceRegistryTest, ANumberIsStoredAsOne) {
  service.WriteRegistryValue(kKey, "Number", kRegistryNumber, "2");
  DWORD type = 0;
  DWORD value = 0;
  DWORD size = sizeof value;
  ASSERT_EQ(
      RegGetValueA(HKEY_LOCAL_MACHINE, kKey, "Number", RRF_RT_REG_DWORD, &type, &value, &size),
      ERROR_SUCCESS);
  EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
  EXPECT_EQ(value, 2U);
}

TEST_F(ServiceRegistryTest, ACommandIsRunToItsEnd) {
  EXPECT_EQ(service.RunAndWait("cmd.exe /c exit 7"), 7);
  EXPECT_EQ(service.RunAndWait("\"no such program.exe\""), -1);
}

TEST_F(ServiceRegistryTest, ABatchFileRunsInAFolderWhoseNameIsNoAscii) {
  const auto folder = std::filesystem::temp_directory_path() / L"Pr\u00FCfstand 1";
  std::filesystem::create_directories(folder);
  const std::string batch = TextOf(folder / "temp.bat");
  service.WriteBatchFile(
      batch, "copy \"" + batch + "\" \"" + TextOf(folder / L"K\u00FChl.txt") + "\"\r\n");
  EXPECT_EQ(service.RunAndWait('"' + batch + '"'), 0);
  EXPECT_TRUE(std::filesystem::exists(folder / L"K\u00FChl.txt"));
  std::filesystem::remove_all(folder);
}

// The test runs from a folder with blanks in its name, so every path has to be quoted.
TEST_F(ServiceRegistryTest, TheDriverIsInstalledByTheBatchFile) {
  RecordingMessages messages;
  const std::string folder = service.ProgramFolder();
  ASSERT_NE(folder.find(' '), std::string::npos);
  SetupGiveIO(service, messages);
  EXPECT_EQ(Content(folder + "\\temp.bat"), "\"" + folder + "\\instdrv2\" giveio remove\r\n\"" +
                                                folder + "\\instdrv2\" giveio \"" + folder +
                                                "\\Giveio.sys\"\r\n");
  EXPECT_EQ(Content(folder + "\\instdrv2.txt"),
            "[giveio][remove]\r\n[giveio][" + folder + "\\Giveio.sys]\r\n");
  EXPECT_EQ(service.ReadRegistryValue(kServiceKey, "Start"), "2");
  EXPECT_TRUE(messages.Texts().empty());
}

// The batch file's place is taken by a folder, which no file can replace.
TEST_F(ServiceRegistryTest, ABatchFileThatCannotBeWrittenIsToldWithTheReason) {
  RecordingMessages messages;
  const std::string batch = service.ProgramFolder() + "\\temp.bat";
  std::filesystem::create_directories(batch + "\\taken");
  SetupGiveIO(service, messages);
  std::filesystem::remove_all(batch);
  EXPECT_EQ(messages.Texts(),
            std::vector<std::string>{"The required I/O drivers could not be installed."});
  EXPECT_EQ(messages.Titles(), std::vector<std::string>{"Error"});
  ASSERT_EQ(messages.explanations.size(), 1U);
  EXPECT_NE(messages.explanations[0].find(batch + ": "), std::string::npos)
      << messages.explanations[0];
  EXPECT_EQ(service.ReadRegistryValue(kServiceKey, "Start"), "");
}

TEST_F(ServiceRegistryTest, LibrariesThatCannotBeLoadedAreExplained) {
  PortLibraries missing(
      {.ports = "no such library.dll", .access = "giveio.dll", .common = "no common.dll"});
  ServiceRegistry unable(missing, port);
  unable.WriteRegistryValue(kServiceKey, "Start", kRegistryNumber, "2");
  EXPECT_EQ(unable.Explanation(),
            "no such library.dll was not found. Put it into the program's folder.\n"
            "no common.dll, a port library for 64-bit programs, can be used in their place.");
  EXPECT_EQ(service.Explanation(), "");
}

TEST_F(ServiceRegistryTest, APortOfAnotherProgramIsExplained) {
  DeviceLocks others({std::filesystem::temp_directory_path()}, [] { return "kestrel-cli"; });
  ASSERT_TRUE(others.Take("port-378"));
  EXPECT_FALSE(port.IsHeld(0x378));
  EXPECT_EQ(service.Explanation().find("The port 378 is in use by kestrel-cli (process "), 0U)
      << service.Explanation();
}

TEST_F(ServiceRegistryTest, NothingIsInstalledWhereALibraryBringsItsDriver) {
  RecordingMessages messages;
  PortLibraries common({.ports = "no ports.dll", .access = "no access.dll"});
  ServiceRegistry able(common, port);
  SetupGiveIO(able, messages);
  EXPECT_FALSE(std::filesystem::exists(service.ProgramFolder() + "\\temp.bat"));
  EXPECT_EQ(service.ReadRegistryValue(kServiceKey, "Start"), "") << "the registry stays as it was";
  EXPECT_EQ(able.Explanation(), "");
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(ServiceRegistryTest, ADriverThatStartsWithTheSystemIsLeftAlone) {
  RecordingMessages messages;
  service.WriteRegistryValue(kServiceKey, "Start", kRegistryNumber, "2");
  SetupGiveIO(service, messages);
  EXPECT_FALSE(std::filesystem::exists(service.ProgramFolder() + "\\temp.bat"));
  EXPECT_TRUE(messages.Texts().empty());
}

}  // namespace
}  // namespace kestrel
