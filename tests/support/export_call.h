// Calling a C export the way the front end does, with its standard output kept out of the
// test's own output.
#pragma once

#include <string>
#include <vector>

namespace gae::testing {

// An export that takes a path and returns a status, like CheckErrorBIP or MAPAllByDefault.
using PathExport = void (*)(int, const char*, int*);

// Calls `fn` on `path` and returns its status; what it printed goes to `printed` when given.
int CallOnPath(PathExport fn, const std::string& path, std::string* printed = nullptr);

// MAPFindNumMarkers, then CheckErrorMAP with arrays of the size read.
struct MapCheck {
  int status = -1, n = 0;
  std::vector<int> names, anchor, a, h, b, x, category;  // names: 35 codes a marker, the marker fastest
  std::vector<float> chi, p;
  std::string Name(int i) const;  // all 35 characters
};
MapCheck CheckMap(const std::string& path);
// The same: the status, and when asked the anchors and the trimmed marker names.
int CheckMapFile(const std::string& path, std::vector<int>* anchors = nullptr,
                 std::vector<std::string>* names = nullptr);

// PLMFindNumMarkers, then CheckErrorPLM with arrays of the size read.
struct PlmCheck {
  int status = -1;
  std::vector<int> names, anchor, category;  // names: 35 codes a marker, the marker fastest
  std::vector<std::vector<int>> sizes;       // founders A to H, then X
  std::vector<float> chi, p;
};
PlmCheck CheckPlm(const std::string& path);
inline int CheckPlmFile(const std::string& path) { return CheckPlm(path).status; }

// CDMFindNumMarkers, then CheckErrorCDM with arrays of the size read.
struct CdmCheck {
  int status = -1, n = 0;
  std::vector<int> names, anchor, category;  // names: 35 codes a marker, the marker fastest
  std::vector<std::vector<int>> sizes;       // the twelve types AC, AD, ..., BB, XX
  std::vector<float> chi, p;
  std::string Name(int i) const;  // trimmed
};
CdmCheck CheckCdmFile(const std::string& path);

}  // namespace gae::testing
