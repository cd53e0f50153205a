// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/registers_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iomanip>
#include <optional>

#include "device/register_list.h"
#include "device/register_log.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kLargestWord = 0xFFFF;

std::string Capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

// The row of a register by its name, in any case.
std::optional<std::int16_t> FindRow(const std::string& name) {
  const std::string wanted = Capitals(name);
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegName[row] == wanted) return row;
  }
  return std::nullopt;
}

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

Json RegisterJson(std::int16_t row) {
  return {{"name", RegName[row]},
          {"address", RegAddr[row]},
          {"hex", FourDigits(RegValue)},
          {"value", RegValue},
          {"scaled", static_cast<double>(RegScaled)}};
}

void PrintRegister(std::ostream& out, std::int16_t row) {
  out << std::left << std::setw(14) << RegName[row] << std::right << FourDigits(RegValue) << "  "
      << std::setw(6) << RegValue << "  " << GeneralNumber(RegScaled) << '\n';
}

}  // namespace

void RegistersCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("registers", "Read and write the sensor's registers");
  word_->require_subcommand(1);
  list_ = word_->add_subcommand("list", "All registers: name, word, value, scaled value");
  read_ = word_->add_subcommand("read", "One register");
  read_->add_option("name", name_, "Name of the register")->required();
  write_ = word_->add_subcommand("write", "Write one register, then read it back");
  write_->add_option("name", name_, "Name of the register")->required();
  write_->add_option("value", value_, "Decimal, or hexadecimal after 0x; 16 bits")->required();
  dump_ = word_->add_subcommand("dump", "Write Registers_LOG.txt");
  dump_->add_option("--out", folder_, "Folder for the file")->type_name("FOLDER");
}

ExitCode RegistersCommand::Run(Session& session, const Output& output) {
  if (list_->parsed()) return List(session, output);
  if (dump_->parsed()) return Dump(session, output);
  return read_->parsed() ? Read(session, output) : Write(session, output);
}

ExitCode RegistersCommand::List(Session& session, const Output& output) {
  Json all = Json::array();
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegReserved[row] || !RegReadable[row]) continue;
    session.core.registers.ReadReg(row);
    if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
    if (output.json) {
      all.push_back(RegisterJson(row));
    } else {
      PrintRegister(output.out, row);
    }
  }
  if (output.json) output.Write(all);
  return ExitCode::Success;
}

ExitCode RegistersCommand::Read(Session& session, const Output& output) const {
  const auto row = FindRow(name_);
  if (!row || !RegReadable[*row]) {
    session.messages.Show("registers read: there is no readable register \"" + name_ + "\".");
    return ExitCode::Usage;
  }
  session.core.registers.ReadReg(*row);
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  if (output.json) {
    output.Write(RegisterJson(*row));
  } else {
    PrintRegister(output.out, *row);
  }
  return ExitCode::Success;
}

ExitCode RegistersCommand::Write(Session& session, const Output& output) const {
  const auto row = FindRow(name_);
  if (!row || !RegWritable[*row]) {
    session.messages.Show("registers write: there is no writable register \"" + name_ + "\".");
    return ExitCode::Usage;
  }
  const auto value = Word(value_);
  if (!value) {
    session.messages.Show("registers write: \"" + value_ + "\" is no 16-bit number.");
    return ExitCode::Usage;
  }
  session.core.registers.WriteReg(*row, *value);
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  return RegReadable[*row] ? Read(session, output) : ExitCode::Success;
}

ExitCode RegistersCommand::Dump(Session& session, const Output& output) const {
  if (!folder_.empty()) {
    const std::filesystem::path folder = std::filesystem::absolute(folder_);
    // The list would go to the user's documents instead.
    if (!session.files.CanWriteIn(folder)) {
      session.messages.Show("--out: the folder " + folder.string() + " cannot be written.");
      return ExitCode::Failure;
    }
    session.files.SetFolder(folder);
  }
  const auto listing = ReadAllRegisters(session.core.registers, {});
  if (!listing) return ExitCode::NoSensor;
  const std::filesystem::path file =
      WriteRegisterLog(session.files, session.core.seams.locale, listing->text);
  if (output.json) {
    output.Write({{"file", file.string()}});
  } else {
    output.out << file.string() << '\n';
  }
  return ExitCode::Success;
}

}  // namespace kestrel
