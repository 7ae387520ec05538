// Keeps standard output off for its life: a collection prints a line for each MAC address, thousands of them thousands.
// What a test reports meanwhile is lost too.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>

namespace kvtest {

class QuietOutput {
  public:
    QuietOutput() {
        std::fflush(stdout);
        ::testing::internal::CaptureStdout();
    }
    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;
    ~QuietOutput() {
        std::fflush(stdout);
        ::testing::internal::GetCapturedStdout();
    }
};

}  // namespace kvtest
