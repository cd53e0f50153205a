// The two control models held together.
// SPDX-License-Identifier: MIT
#include "device/c407pt.h"

#include "support/register_bench.h"

namespace kestrel {
namespace {

using C407pt = RegisterBench;

TEST_F(C407pt, HoldsModelsOfItsOwn) {
  c407pt device(core.registers);
  EXPECT_NE(&device.RecCtrl(), gRecCtrl.get());
  EXPECT_NE(&device.AlmCtrl(), gAlmCtrl.get());
  sensor.Set(address::kRecCtrl, 0x0030);
  device.RecCtrl().ReadRecCtrl();
  EXPECT_EQ(device.RecCtrl().RangeFS(), 3);
  EXPECT_EQ(gRecCtrl->RangeFS(), 0);
}

// Assigning reaches the first property of the held object and does not replace the object.
TEST_F(C407pt, AssigningSetsTheFirstProperty) {
  c407pt device(core.registers);
  const cRecCtrl* const recCtrl = &device.RecCtrl();
  const cALMCtrl* const almCtrl = &device.AlmCtrl();
  device.RecCtrl(2);
  device.AlmCtrl(9);
  EXPECT_EQ(device.RecCtrl().RecModeCode(), 2);
  EXPECT_EQ(device.AlmCtrl().ResponseDelay(), 9);
  EXPECT_EQ(&device.RecCtrl(), recCtrl);
  EXPECT_EQ(&device.AlmCtrl(), almCtrl);
  EXPECT_EQ(TakeFrames(), Frames{});
}

}  // namespace
}  // namespace kestrel
