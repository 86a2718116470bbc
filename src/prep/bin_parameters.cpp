#include "prep/bin_parameters.h"

#include "vocabulary/fixed_format.h"
#include "vocabulary/message_code.h"
#include "vocabulary/messages.h"

namespace gae {

namespace {

BinParameterRead Fail(int code, std::initializer_list<MsgArg> args) {
  MessageCode() = code;
  PrintMessage(code, args);
  return BinParameterRead::kFailed;
}

std::string RealText(float value) { return fmt::Trim(fmt::F(value, 12, 4)); }

bool ReadReal(InputFile& in, float& value) {
  in.SkipRemarks();
  ListRead read(in);
  return read.Real(value);
}

bool ReadInt(InputFile& in, int32_t& value) {
  in.SkipRemarks();
  ListRead read(in);
  return read.Int(value);
}

}  // namespace

BinParameterRead ReadBinParameters(InputFile& in, BinParameters& out) {
  MessageCode() = 0;
  in.SkipRemarks();
  {
    ListRead read(in);
    std::string_view item;
    if (!read.Item(item)) return BinParameterRead::kAbsent;
    if (!ParseReal(item, out.missing_rate)) return Fail(3141, {});
  }
  if (!(out.missing_rate > 0.0f && out.missing_rate < 0.10f))
    return Fail(3142, {RealText(out.missing_rate)});
  if (!ReadReal(in, out.distortion_p)) return Fail(3143, {});
  if (!(out.distortion_p > 0.0f && out.distortion_p < 0.1f))
    return Fail(3144, {RealText(out.distortion_p)});
  if (!ReadInt(in, out.use_anchors)) return Fail(3145, {});
  if (!ReadInt(in, out.missing_agrees)) return Fail(3146, {});
  if (!ReadInt(in, out.method)) return Fail(3147, {});
  if (out.method < 1 || out.method > 2) return Fail(3148, {out.method});
  return BinParameterRead::kRead;
}

}  // namespace gae
