#include "input/gsp_header.h"

#include "vocabulary/fixed_format.h"
#include "vocabulary/run_log.h"

namespace gae {

namespace {

struct SizeRule {
  const char* what;  // the words of the messages
  int32_t least;
  const char* range;
};

constexpr SizeRule kTraining = {"number of population size for training population", 1, "[1:]"};
constexpr SizeRule kBreeding = {"number of population size for breeding population", 0, "[0:]"};
constexpr SizeRule kTraits = {"number of traits", 1, "[1:]"};

bool Fail(const std::string& text) {
  EmitLine("--Input error: " + text);
  return false;
}

bool ReadSize(InputFile& in, const SizeRule& rule, int32_t& value) {
  in.SkipRemarks();
  {
    ListRead read(in);
    if (!read.Int(value)) return Fail(std::string("cannot read ") + rule.what + "!");
  }
  if (value < rule.least) {
    return Fail(std::string(rule.what) + " out of range " + rule.range + "! value=" +
                fmt::IntValue(value));
  }
  return true;
}

}  // namespace

bool ReadGspHeader(InputFile& in, bool with_names, GspHeader& out) {
  out = GspHeader{};
  if (!ReadSize(in, kTraining, out.training_size) || !ReadSize(in, kBreeding, out.breeding_size) ||
      !ReadSize(in, kTraits, out.num_traits))
    return false;
  if (!with_names) return true;
  in.SkipRemarks();
  ListRead read(in);
  for (int32_t t = 1; t <= out.num_traits; ++t) {
    std::string name;
    if (!read.Text(name, 19)) return Fail("cannot read trait names! TraitID=" + fmt::IntValue(t));
    out.trait_names.push_back(std::move(name));
  }
  return true;
}

}  // namespace gae
