#include "support/export_call.h"

#include <gtest/gtest.h>

#include "vocabulary/fixed_format.h"
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

std::string MapCheck::Name(int i) const {
  std::string name;
  for (int j = 0; j < 35; ++j) name += static_cast<char>(names[j * n + i]);
  return name;
}

MapCheck CheckMap(const std::string& path) {
  MapCheck c;
  const int len = static_cast<int>(path.size());
  ::testing::internal::CaptureStdout();
  MAPFindNumMarkers(len, path.data(), &c.n, &c.status);
  if (c.status == 0) {
    const int n = c.n;
    c.names.assign(35 * n, 0);
    for (auto* v : {&c.anchor, &c.a, &c.h, &c.b, &c.x, &c.category}) v->assign(n, 0);
    c.chi.assign(n, 0.0f);
    c.p.assign(n, 0.0f);
    CheckErrorMAP(len, path.data(), n, c.names.data(), c.anchor.data(), c.a.data(), c.h.data(), c.b.data(),
                  c.x.data(), c.category.data(), c.chi.data(), c.p.data(), &c.status);
  }
  ::testing::internal::GetCapturedStdout();
  return c;
}

int CheckMapFile(const std::string& path, std::vector<int>* anchors, std::vector<std::string>* names) {
  const MapCheck c = CheckMap(path);
  if (c.status == 0 && anchors != nullptr) *anchors = c.anchor;
  for (int i = 0; c.status == 0 && names != nullptr && i < c.n; ++i) names->push_back(fmt::Trim(c.Name(i)));
  return c.status;
}

PlmCheck CheckPlm(const std::string& path) {
  PlmCheck c;
  int n = 0;
  const int len = static_cast<int>(path.size());
  ::testing::internal::CaptureStdout();
  PLMFindNumMarkers(len, path.data(), &n, &c.status);
  if (c.status == 0) {
    c.names.assign(35 * n, 0);
    c.anchor.assign(n, -1);
    c.category.assign(n, 0);
    c.sizes.assign(9, std::vector<int>(n, -1));
    c.chi.assign(n, 0.0f);
    c.p.assign(n, 0.0f);
    auto& s = c.sizes;
    CheckErrorPLM(len, path.data(), n, c.names.data(), c.anchor.data(), s[0].data(), s[1].data(),
                  s[2].data(), s[3].data(), s[4].data(), s[5].data(), s[6].data(), s[7].data(),
                  s[8].data(), c.category.data(), c.chi.data(), c.p.data(), &c.status);
  }
  ::testing::internal::GetCapturedStdout();
  return c;
}

std::string CdmCheck::Name(int i) const {
  std::string name;
  for (int j = 0; j < 35; ++j) name += static_cast<char>(names[j * n + i]);
  return fmt::Trim(name);
}

CdmCheck CheckCdmFile(const std::string& path) {
  CdmCheck c;
  ::testing::internal::CaptureStdout();
  CDMFindNumMarkers(static_cast<int>(path.size()), path.data(), &c.n, &c.status);
  if (c.status == 0) {
    const int n = c.n;
    c.names.assign(35 * n, 0);
    c.anchor.assign(n, 0);
    c.category.assign(n, 0);
    c.sizes.assign(12, std::vector<int>(n, 0));
    c.chi.assign(n, 0.0f);
    c.p.assign(n, 0.0f);
    auto s = [&](int k) { return c.sizes[k].data(); };
    CheckErrorCDM(static_cast<int>(path.size()), path.data(), n, c.names.data(), c.anchor.data(), s(0), s(1),
                  s(2), s(3), s(4), s(5), s(6), s(7), s(8), s(9), s(10), s(11), c.category.data(),
                  c.chi.data(), c.p.data(), &c.status);
  }
  ::testing::internal::GetCapturedStdout();
  return c;
}

}  // namespace gae::testing
