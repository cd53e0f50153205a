// Registers by name, and how their values are shown.
// SPDX-License-Identifier: MIT
#include "cli/registers_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <filesystem>
#include <iomanip>
#include <optional>

#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

constexpr std::int32_t kLargestWord = 0xFFFF;

// "0x" and hexadecimal digits, or a decimal number, of 16 bits.
std::optional<std::int32_t> Word(const std::string& text) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    const auto value = HexadecimalNumber(text.substr(2));
    if (!value || *value > kLargestWord) return std::nullopt;
    return static_cast<std::int32_t>(*value);
  }
  const auto value = WholeTextNumber(text);
  if (!value || *value < 0 || *value > kLargestWord || *value != static_cast<int>(*value)) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(*value);
}

std::string FourDigits(std::int32_t value) {
  const std::string digits = "0000" + Hex(value & kLargestWord);
  return digits.substr(digits.size() - 4);
}

Json RegisterJson(const RegisterValue& read) {
  return {{"name", read.name},
          {"address", read.address},
          {"hex", FourDigits(read.value)},
          {"value", read.value},
          {"scaled", static_cast<double>(read.scaled)}};
}

void PrintRegister(std::ostream& out, const RegisterValue& read) {
  out << std::left << std::setw(14) << read.name << std::right << FourDigits(read.value) << "  "
      << std::setw(6) << read.value << "  " << GeneralNumber(read.scaled) << '\n';
}

}  // namespace

void RegistersCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("registers", "Read and write the sensor's registers");
  word_->require_subcommand(1);
  list_ = word_->add_subcommand("list", "List all registers: name, word, value, scaled value");
  read_ = word_->add_subcommand("read", "Read one register");
  read_->add_option("name", name_, "Name of the register, for example FFT_AVG")->required();
  write_ = word_->add_subcommand("write", "Write one register, then read it back");
  write_->add_option("name", name_, "Name of the register, for example FFT_AVG")->required();
  write_->add_option("value", value_, "16-bit value, decimal or, after 0x, hexadecimal")
      ->required();
  dump_ = word_->add_subcommand("dump", "Write the list of all registers to Registers_LOG.txt");
  dump_->add_option("--out", folder_, "Folder for the file")->type_name("FOLDER");
}

ExitCode RegistersCommand::Run(Session& session, const Output& output) {
  if (list_->parsed()) return List(session, output);
  if (dump_->parsed()) return Dump(session, output);
  return read_->parsed() ? Read(session, output) : Write(session, output);
}

ExitCode RegistersCommand::List(Session& session, const Output& output) {
  const auto registers = session.station.ReadRegisters();
  if (!registers) return session.Fail(registers.Why());
  Json all = Json::array();
  for (const RegisterValue& read : *registers) {
    if (output.json) {
      all.push_back(RegisterJson(read));
    } else {
      PrintRegister(output.out, read);
    }
  }
  if (output.json) output.Write(all);
  return ExitCode::Success;
}

ExitCode RegistersCommand::Read(Session& session, const Output& output) const {
  if (!Station::CanRead(name_)) {
    session.Say("registers read: there is no readable register \"" + name_ +
                "\"; \"registers list\" shows all.");
    return ExitCode::Usage;
  }
  const auto read = session.station.ReadRegister(name_);
  if (!read) return session.Fail(read.Why());
  if (output.json) {
    output.Write(RegisterJson(*read));
  } else {
    PrintRegister(output.out, *read);
  }
  return ExitCode::Success;
}

ExitCode RegistersCommand::Write(Session& session, const Output& output) const {
  if (!Station::CanWrite(name_)) {
    session.Say("registers write: there is no writable register \"" + name_ +
                "\"; \"registers list\" shows all.");
    return ExitCode::Usage;
  }
  const auto value = Word(value_);
  if (!value) {
    session.Say("registers write: \"" + value_ +
                "\" is not a 16-bit value: 0 to 65535, or 0x0000 to 0xFFFF.");
    return ExitCode::Usage;
  }
  const auto written = session.station.WriteRegister(name_, *value);
  if (!written) return session.Fail(written.Why());
  return Station::CanRead(name_) ? Read(session, output) : ExitCode::Success;
}

ExitCode RegistersCommand::Dump(Session& session, const Output& output) const {
  if (!folder_.empty()) {
    const std::filesystem::path folder = AbsolutePathOf(folder_);
    // The list would go to the user's documents instead.
    if (!session.station.UseFolder(folder)) {
      session.Say("--out: the folder " + folder.string() + " cannot be written.");
      return ExitCode::Failure;
    }
  }
  const auto file = session.station.WriteRegisterList();
  if (!file) return session.Fail(file.Why());
  if (output.json) {
    output.Write({{"file", file->string()}});
  } else {
    output.out << file->string() << '\n';
  }
  return ExitCode::Success;
}

}  // namespace kestrel
