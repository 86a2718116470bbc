#include "input/anchor_section.h"

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"

namespace gae {

namespace {

bool Fail(int code, int marker, int anchor, std::string_view name1, std::string_view name2) {
  MessageCode() = code;
  PrintAnchorMessage(marker, anchor, name1, name2);
  return false;
}

}  // namespace

bool ReadAnchorSection(InputFile& in, const std::vector<std::string>& names,
                       std::vector<int32_t>& anchors) {
  MessageCode() = 0;
  anchors.clear();
  in.SkipRemarks();
  for (std::size_t i = 0; i < names.size(); ++i) {
    const int marker = static_cast<int>(i + 1);
    std::string name;
    int32_t anchor = 0;
    {
      ListRead read(in);
      // The message shows what stood where the row was expected.
      if (!read.Text(name, 35)) return Fail(2301, marker, 0, "", "");
      if (!read.Int(anchor)) return Fail(2301, marker, 0, name, "");
    }
    if (name != names[i]) return Fail(2302, marker, 0, names[i], name);
    if (anchor < 0) return Fail(2303, marker, anchor, name, "");
    anchors.push_back(anchor);
  }
  return true;
}

}  // namespace gae
