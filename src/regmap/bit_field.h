// cBitFieldProp: one bit field of a register, described for display.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

// One bit field of a register, described for display.
class cBitFieldProp {
 public:
  [[nodiscard]] const std::string& BFRange() const { return range_; }
  void BFRange(const std::string& bits) { range_ = bits; }

  [[nodiscard]] std::int16_t BFValue() const { return value_; }
  void BFValue(std::int16_t value) { value_ = value; }

  [[nodiscard]] const std::string& BFTitle() const { return title_; }
  void BFTitle(const std::string& title) { title_ = title; }

  // The name is spelled so.
  [[nodiscard]] const std::string& SettingDecription() const { return setting_; }
  void SettingDecription(const std::string& setting) { setting_ = setting; }

 private:
  std::string range_;
  std::int16_t value_ = 0;
  std::string title_;
  std::string setting_;
};

}  // namespace kestrel
