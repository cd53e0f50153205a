// Answers questions about number texts, one a line, for check_number_texts.py.
// SPDX-License-Identifier: MIT
// Answers questions about numbers, one a line, for check_number_texts.py.

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <ios>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>

#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

using Answer = std::function<std::string(const std::string&)>;

double Number(const std::string& text) {
  return std::strtod(text.c_str(), nullptr);
}

// Every bit of it.
std::string Exact(double value) {
  std::ostringstream text;
  text << std::hexfloat << value;
  return text.str();
}

template <typename Integer>
Answer Converted(Integer (*convert)(double)) {
  return [convert](const std::string& text) -> std::string {
    try {
      return std::to_string(convert(Number(text)));
    } catch (const RuntimeError& error) {
      return error.what();
    }
  };
}

std::string Fixed(const std::string& text) {
  std::istringstream words(text);
  int decimals = 0;
  std::string number;
  words >> decimals >> number;
  return FixedNumber(Number(number), decimals);
}

template <typename Value>
std::string ExactOr(const std::optional<Value>& value) {
  return value ? Exact(static_cast<double>(*value)) : "none";
}

const std::map<std::string, Answer>& Answers() {
  using Text = const std::string&;
  static const std::map<std::string, Answer> answers{
      {"double", [](Text text) { return GeneralNumber(Number(text)); }},
      {"single", [](Text text) { return GeneralNumber(static_cast<float>(Number(text))); }},
      {"fixed", Fixed},
      {"four", [](Text text) { return OneToFourDecimals(Number(text)); }},
      {"grouped", [](Text text) { return GroupedWholeNumber(Number(text)); }},
      {"byte", Converted(ToByte)},
      {"integer", Converted(ToInteger)},
      {"long", Converted(ToLong)},
      {"hex32", [](Text text) { return Hex(static_cast<std::int32_t>(std::stol(text))); }},
      {"hex16", [](Text text) { return Hex(static_cast<std::int16_t>(std::stol(text))); }},
      {"leading", [](Text text) { return Exact(LeadingNumber(text)); }},
      {"whole", [](Text text) { return ExactOr(WholeTextNumber(text)); }},
      {"hexword", [](Text text) { return ExactOr(HexadecimalWord(text)); }}};
  return answers;
}

void AnswerAll(std::istream& questions, std::ostream& answers) {
  for (std::string line; std::getline(questions, line);) {
    const std::size_t blank = line.find(' ');
    answers << Answers().at(line.substr(0, blank))(line.substr(blank + 1)) << "\n";
  }
}

}  // namespace
}  // namespace kestrel

int main() {
  kestrel::AnswerAll(std::cin, std::cout);
  return 0;
}
