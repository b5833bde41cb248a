// SPDX-License-Identifier: BSD-3-Clause
// Environment variables and the place of the running program.
#include "model/torvel/objects/environment.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

const char* const variable = "RDB2NIMBRA_ENVIRONMENT_TEST";

class Environment : public testing::Test {
 protected:
  Environment() { unsetenv(variable); }
  ~Environment() override { unsetenv(variable); }
};

TEST_F(Environment, UnsetVariableReadsAsEmpty) {
  EXPECT_EQ(Torvel::getEnv(variable), "");
}

TEST_F(Environment, VariableIsSetForTheProcess) {
  Torvel::setEnv(variable, "one", true);
  EXPECT_STREQ(std::getenv(variable), "one");
  EXPECT_EQ(Torvel::getEnv(variable), "one");
}

TEST_F(Environment, PresentValueIsOverwrittenOnlyOnDemand) {
  Torvel::setEnv(variable, "one", false);
  Torvel::setEnv(variable, "two", false);
  EXPECT_STREQ(std::getenv(variable), "one");
  Torvel::setEnv(variable, "three", true);
  EXPECT_STREQ(std::getenv(variable), "three");
}

TEST_F(Environment, RefusedNameIsIgnored) {
  EXPECT_NO_THROW(Torvel::setEnv("NAME=WITH=SIGNS", "x", true));
  EXPECT_EQ(Torvel::getEnv("NAME=WITH=SIGNS"), "");
}

TEST(ExecutableDirectory, HoldsTheRunningProgram) {
  const std::string directory = Torvel::getExecutableDir();
  ASSERT_FALSE(directory.empty());
  EXPECT_NE(directory.back(), '/');
  EXPECT_TRUE(std::filesystem::exists(directory + "/model_objects_test"));
}

} // namespace
