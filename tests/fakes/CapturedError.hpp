#pragma once

#include <gtest/gtest.h>

#include <string>

namespace tests {

/// Catches what goes to standard error from its construction until `text` is asked for.
class CapturedError {
 public:
  CapturedError() { testing::internal::CaptureStderr(); }
  CapturedError(const CapturedError&) = delete;
  CapturedError& operator=(const CapturedError&) = delete;
  ~CapturedError() {
    if (!taken_) (void)testing::internal::GetCapturedStderr();
  }

  /// To be asked once: the capture ends.
  [[nodiscard]] std::string text() {
    taken_ = true;
    return testing::internal::GetCapturedStderr();
  }

 private:
  bool taken_ = false;
};

}  // namespace tests
