// Puts the process registry back to the default sets around each test.
#pragma once

#include "UnitsTestHelpers.h"

#include <Core/Common/Units/DefaultUnits.h>
#include <Core/Common/Units/UnitsRegistry.h>

#include <gtest/gtest.h>

class UnitsRegistryFixture : public ::testing::Test
{
protected:
  void SetUp() override { reset(); }
  void TearDown() override { reset(); }

  static void reset()
  {
    RTE::UnitsRegistry::getInstance().clear();
    RTE::registerDefaultUnits();
  }

  RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
};
