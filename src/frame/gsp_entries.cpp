// The two genomic-prediction entries: no log, no status code, a logical error flag.
#include <string>

#include "frame/entry.h"
#include "frame/name_codes.h"
#include "input/gsp_header.h"
#include "frame/validator_entries.h"

namespace gae {

namespace {

constexpr int kNameWidth = 19;

// Opens the file and reads its header; false (after the line that says why) on any failure.
bool ReadHeaderOf(int path_len, const char* path, bool with_names, GspHeader& header) {
  const std::string file_path = EntryPath(path_len, path);
  InputFile in;
  if (!in.Open(file_path)) {
    PrintMessage(kMissingFile, {MsgArg::Field(file_path)});
    return false;
  }
  return ReadGspHeader(in, with_names, header);
}

template <class Body>
void GuardedGspEntry(int* error_flag, Body&& body) noexcept {
  if (error_flag != nullptr) *error_flag = 0;
  bool ok = false;
  try {
    ok = body();
  } catch (...) {
    ok = false;
  }
  if (!ok && error_flag != nullptr) *error_flag = 1;
}

}  // namespace

void GspFindNumTraitsEntry(int path_len, const char* path, int* num_traits, int* error_flag) {
  GuardedGspEntry(error_flag, [&] {
    GspHeader header;
    if (num_traits == nullptr || !ReadHeaderOf(path_len, path, false, header)) return false;
    *num_traits = header.num_traits;
    return true;
  });
}

void GspFindTraitNameEntry(int path_len, const char* path, int num_traits, int* names,
                           int* first_value, int* error_flag) {
  GuardedGspEntry(error_flag, [&] {
    GspHeader header;
    if ((num_traits > 0 && names == nullptr) || first_value == nullptr) return false;
    if (!ReadHeaderOf(path_len, path, true, header)) return false;
    // The caller's extent lays the matrix out; a larger one leaves its last rows as they were.
    NamesToCodes(header.trait_names, kNameWidth, num_traits, names);
    *first_value = header.training_size;
    return true;
  });
}

}  // namespace gae
