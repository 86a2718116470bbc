#include "input/header_fields.h"

#include <cstdlib>

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "input/tool_codes.h"

namespace gae {

namespace {

struct FieldRule {
  int read_code;   // the value cannot be read
  int range_code;  // the value is out of range
  int32_t low;     // smallest accepted value
  int32_t high;    // largest accepted value (INT32_MAX: no upper bound)
};

constexpr int32_t kNoLimit = 2147483647;

FieldRule RuleOf(HeaderField field) {
  switch (field) {
    case HeaderField::kIndicator: return {2001, 2002, 1, 2};
    case HeaderField::kPopulationType: return {2003, 2004, 1, 20};
    case HeaderField::kMappingFunction: return {2008, 2009, 1, 3};
    case HeaderField::kSpaceType: return {2010, 2011, 1, 2};
    case HeaderField::kSpaceUnit: return {2012, 2013, 1, 2};
    case HeaderField::kNumChs: return {2014, 2015, 1, kNoLimit};
    case HeaderField::kNumMarkers: return {2016, 2017, 1, kNoLimit};
    case HeaderField::kPopulationSize: return {2018, 2019, 1, kNoLimit};
    case HeaderField::kNumTraits: return {2020, 2021, 0, kNoLimit};
    case HeaderField::kNumEnvs: return {2022, 2023, 1, kNoLimit};
    case HeaderField::kNumReps: return {2024, 2025, 1, kNoLimit};
    case HeaderField::kNumFamilies: return {2026, 2027, 1, kNoLimit};
  }
  return {0, 0, 0, 0};
}

// The population types a tool accepts, and the code of a refusal (0: no test at all).
int PopulationTypeRefusal(int tool_code, int32_t type) {
  switch (tool_code) {
    case 2: case kMapHeaderCode: case kMapToolCode: case 106: case 107: case 108:
      return (type >= 1 && type <= 20) ? 0 : 2004;
    case 110: {
      // Nested association mapping takes the populations whose lines are genotyped as two
      // homozygous classes or as backcrosses: no F2-like or F3-like types.
      const bool ok = (type >= 1 && type <= 6) || (type >= 9 && type <= 12) ||
                      (type >= 17 && type <= 20);
      return ok ? 0 : 2005;
    }
    case kClonalToolCode: return (type == 1 || type == 2) ? 0 : 2006;
    case kPureLineToolCode: return (type >= 1 && type <= 4) ? 0 : 2007;
    default: return 0;
  }
}

bool Fail(int code, int32_t value) {
  MessageCode() = code;
  PrintHeaderMessage(value);
  return false;
}

}  // namespace

int32_t PairCellCount(int32_t num_markers) {
  const long long product = static_cast<long long>(num_markers) * (num_markers - 1LL);
  const auto wrapped = static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(product)));
  return wrapped / 2;
}

bool PairCellsFit(int32_t cells, Allocator allocate) {
  if (cells < 1) return true;
  if (allocate == nullptr) allocate = &std::malloc;
  void* block = allocate(static_cast<std::size_t>(cells) * 4u);
  if (block == nullptr) return false;
  std::free(block);
  return true;
}

bool ReadHeaderField(InputFile& in, HeaderField field, int tool_code, int32_t& value) {
  const FieldRule rule = RuleOf(field);
  in.SkipRemarks();
  int32_t read_value = 0;
  {
    ListRead read(in);
    if (!read.Int(read_value)) return Fail(rule.read_code, 0);
  }
  value = read_value;
  if (field == HeaderField::kPopulationType) {
    const int refusal = PopulationTypeRefusal(tool_code, read_value);
    return refusal == 0 ? true : Fail(refusal, read_value);
  }
  if (read_value < rule.low || read_value > rule.high) return Fail(rule.range_code, read_value);
  if (field == HeaderField::kNumMarkers && !PairCellsFit(PairCellCount(read_value))) {
    return Fail(2028, read_value);
  }
  return true;
}

}  // namespace gae
