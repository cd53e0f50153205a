// ALM_CTRL read, written and described field by field.
// SPDX-License-Identifier: MIT
#include "device/alm_ctrl.h"

#include <array>

#include "device/field.h"
#include "numeric/conversions.h"
#include "regmap/register_table.h"

namespace kestrel {

namespace {

std::unique_ptr<cALMCtrl> shared;

}  // namespace

const std::unique_ptr<cALMCtrl>& gAlmCtrl = shared;

void MakeAlmCtrl(RegisterAccess& registers) {
  shared = std::make_unique<cALMCtrl>(registers);
}

void DropAlmCtrl() {
  shared.reset();
}

namespace {

constexpr Field kResponseDelay{8, 0x0F00};
constexpr Field kLatch{7, 0x0080};
constexpr Field kDioEnable{6, 0x0040};
constexpr Field kSystemPolarity{5, 0x0020};
constexpr Field kSystemSource{4, 0x0010};
constexpr Field kSystemEnable{3, 0x0008};
constexpr Field kSpectralZ{2, 0x0004};
constexpr Field kSpectralY{1, 0x0002};
constexpr Field kSpectralX{0, 0x0001};

constexpr std::array<const char*, 2> kOffOn{"Off", "On"};
constexpr std::array<const char*, 2> kPolarities{"Less than the limit", "Greater than the limit"};
constexpr std::array<const char*, 2> kSources{"Power supply", "Temperature"};

}  // namespace

std::vector<cBitFieldProp> DescribeAlmCtrl(std::int32_t word) {
  return {DescribeField(kResponseDelay, word, "Response Delay"),
          DescribeField(kLatch, word, "Latch Alarm Flags in STATUS", kOffOn),
          DescribeField(kDioEnable, word, "Alarms 1 and 2 on DIO1 and DIO2", kOffOn),
          DescribeField(kSystemPolarity, word, "System Alarm When", kPolarities),
          DescribeField(kSystemSource, word, "System Alarm Source", kSources),
          DescribeField(kSystemEnable, word, "System Alarm", kOffOn),
          DescribeField(kSpectralZ, word, "Spectral Alarm Z", kOffOn),
          DescribeField(kSpectralY, word, "Spectral Alarm Y", kOffOn),
          DescribeField(kSpectralX, word, "Spectral Alarm X", kOffOn)};
}

void cALMCtrl::WriteAlmCtrl() {
  registers_.WriteReg(row::ALM_CTRL,
                      ToLong(kLatch.Place(latch_) + kResponseDelay.Place(responseDelay_) +
                             kDioEnable.Place(dioEnable_) + kSystemPolarity.Place(systemPolarity_) +
                             kSystemSource.Place(systemSource_) +
                             kSystemEnable.Place(systemEnable_) + kSpectralZ.Place(spectralZ_) +
                             kSpectralY.Place(spectralY_) + kSpectralX.Place(spectralX_)));
}

bool cALMCtrl::ReadAlmCtrl() {
  const bool read = registers_.Read(row::ALM_CTRL).has_value();
  const std::int32_t word = RegValue;
  readWord_ = NarrowToInteger(word);
  responseDelay_ = kResponseDelay.Take(word);
  latch_ = kLatch.Take(word);
  dioEnable_ = kDioEnable.Take(word);
  systemPolarity_ = kSystemPolarity.Take(word);
  systemSource_ = kSystemSource.Take(word);
  systemEnable_ = kSystemEnable.Take(word);
  spectralZ_ = kSpectralZ.Take(word);
  spectralY_ = kSpectralY.Take(word);
  spectralX_ = kSpectralX.Take(word);
  return read;
}

}  // namespace kestrel
