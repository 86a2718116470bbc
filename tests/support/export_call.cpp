#include "support/export_call.h"

#include <gtest/gtest.h>

#include "frame/fixed_format.h"
#include "gaengine.h"

namespace gae::testing {

int CallOnPath(PathExport fn, const std::string& path, std::string* printed) {
  int status = -1;
  ::testing::internal::CaptureStdout();
  fn(static_cast<int>(path.size()), path.data(), &status);
  const std::string out = ::testing::internal::GetCapturedStdout();
  if (printed != nullptr) *printed = out;
  return status;
}

int CheckMapFile(const std::string& path, std::vector<int>* anchors, std::vector<std::string>* names) {
  int n = 0, status = -1;
  ::testing::internal::CaptureStdout();
  MAPFindNumMarkers(static_cast<int>(path.size()), path.data(), &n, &status);
  if (status == 0) {
    std::vector<int> codes(35 * n), anchor(n), a(n), h(n), b(n), x(n), category(n);
    std::vector<float> chi(n), p(n);
    CheckErrorMAP(static_cast<int>(path.size()), path.data(), n, codes.data(), anchor.data(), a.data(),
                  h.data(), b.data(), x.data(), category.data(), chi.data(), p.data(), &status);
    if (anchors != nullptr) *anchors = anchor;
    for (int i = 0; names != nullptr && i < n; ++i) {
      std::string name;
      for (int j = 0; j < 35; ++j) name += static_cast<char>(codes[j * n + i]);
      names->push_back(fmt::Trim(name));
    }
  }
  ::testing::internal::GetCapturedStdout();
  return status;
}

int CheckPlmFile(const std::string& path) {
  int n = 0, status = -1;
  const int len = static_cast<int>(path.size());
  ::testing::internal::CaptureStdout();
  PLMFindNumMarkers(len, path.data(), &n, &status);
  if (status == 0) {
    std::vector<int> codes(35 * n), anchor(n), category(n);
    std::vector<std::vector<int>> s(9, std::vector<int>(n));
    std::vector<float> chi(n), p(n);
    CheckErrorPLM(len, path.data(), n, codes.data(), anchor.data(), s[0].data(), s[1].data(),
                  s[2].data(), s[3].data(), s[4].data(), s[5].data(), s[6].data(), s[7].data(),
                  s[8].data(), category.data(), chi.data(), p.data(), &status);
  }
  ::testing::internal::GetCapturedStdout();
  return status;
}

}  // namespace gae::testing
