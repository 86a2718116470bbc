#include "support/export_call.h"

#include <gtest/gtest.h>

namespace gae::testing {

int CallOnPath(PathExport fn, const std::string& path, std::string* printed) {
  int status = -1;
  ::testing::internal::CaptureStdout();
  fn(static_cast<int>(path.size()), path.data(), &status);
  const std::string out = ::testing::internal::GetCapturedStdout();
  if (printed != nullptr) *printed = out;
  return status;
}

}  // namespace gae::testing
