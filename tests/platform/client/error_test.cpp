// SPDX-License-Identifier: BSD-3-Clause
// The layout of the client's exception class, which programs built against another header of it rely on.
#include "platform/client/error.h"

#include "tests/support/virtual_slot.h"

#include <gtest/gtest.h>

namespace {

TEST(ClientError, VirtualsKeepTheFixedOrder) {
  using support::slotOf;
  EXPECT_EQ(slotOf(&riegl::rdb::Error::what), 2); // the destructors take two slots
  EXPECT_EQ(slotOf(&riegl::rdb::Error::code), 3);
  EXPECT_EQ(slotOf(&riegl::rdb::Error::details), 4);
}

} // namespace
