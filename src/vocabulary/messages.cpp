#include "vocabulary/messages.h"

#include <algorithm>
#include <string>

#include "vocabulary/fixed_format.h"
#include "vocabulary/message_catalogue.h"
#include "vocabulary/message_code.h"
#include "vocabulary/run_log.h"

namespace gae {

MsgArg::MsgArg(int value) : text_(fmt::IntValue(value)) {}
MsgArg::MsgArg(long long value) : text_(fmt::IntValue(value)) {}
MsgArg::MsgArg(std::string_view text) : text_(fmt::TrimRight(text)) {}
MsgArg::MsgArg(const char* text) : text_(fmt::TrimRight(text)) {}
MsgArg::MsgArg(const std::string& text) : text_(fmt::TrimRight(text)) {}

MsgArg MsgArg::Field(std::string field) {
  MsgArg arg;
  arg.text_ = std::move(field);
  return arg;
}

namespace {

const CatalogueEntry* Find(int code) {
  auto entries = Catalogue();
  auto it = std::lower_bound(entries.begin(), entries.end(), code,
                             [](const CatalogueEntry& e, int c) { return e.code < c; });
  return (it != entries.end() && it->code == code) ? &*it : nullptr;
}

std::string Prefix(int code) {
  // "--Error", the code as I4, ": ": 13 characters.
  return "--Error" + fmt::I(code, 4) + ": ";
}

bool InRange(int code, int low, int high) { return code >= low && code <= high; }

void Emit(const CatalogueEntry& entry, const std::vector<std::string>& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (entry.open_record && i + 1 == lines.size()) EmitPiece(lines[i]);
    else EmitLine(lines[i]);
  }
}

void PrintCurrent(std::initializer_list<MsgArg> args) {
  const int code = MessageCode();
  if (const CatalogueEntry* entry = Find(code)) Emit(*entry, MessageLines(code, args));
}

}  // namespace

bool IsCatalogued(int code) { return Find(code) != nullptr; }

std::vector<std::string> MessageLines(int code, std::initializer_list<MsgArg> args) {
  const CatalogueEntry* entry = Find(code);
  if (entry == nullptr) return {};
  std::string text;
  auto arg = args.begin();
  for (const char* p = entry->text; *p != '\0'; ++p) {
    if (p[0] == '{' && p[1] == '}') {
      if (arg != args.end()) text += (arg++)->Text();
      ++p;
    } else {
      text += *p;
    }
  }
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (true) {
    std::size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  if (entry->prefixed) lines.front() = Prefix(code) + lines.front();
  return lines;
}

void PrintMessage(int code, std::initializer_list<MsgArg> args) {
  if (const CatalogueEntry* entry = Find(code)) Emit(*entry, MessageLines(code, args));
}

std::string CpuTimeLine(float t1, float t2) {
  const float seconds = t2 - t1;
  const float minutes = seconds / 60.0f;
  // Each reading in an F13.3 field, left-adjusted; the field keeps its width.
  return MessageLines(1103, {MsgArg::Field(fmt::LeftAdjust(fmt::F(minutes, 13, 3))),
                             MsgArg::Field(fmt::LeftAdjust(fmt::F(seconds, 13, 3)))})
      .front();
}

void PrintFrameMessage(std::string_view name, float t1, float t2, int value) {
  const int code = MessageCode();
  if (!InRange(code, 1101, 1117)) return;
  switch (code) {
    case 1101:
    case 1102:
      PrintCurrent({name});
      return;
    case 1103: {
      // Written in two pieces on each stream, the first leaving the record open.
      const std::string line = CpuTimeLine(t1, t2);
      const std::size_t split = line.find(" minutes or ");
      EmitPiece(line.substr(0, split));
      EmitLine(line.substr(split));
      return;
    }
    default:
      PrintCurrent({value});
  }
}

void PrintHeaderMessage(int value) {
  const int code = MessageCode();
  if (InRange(code, 2001, 2032)) PrintCurrent({value});
}

void PrintChromosomeMessage(int chrom, int count, int marker, int chrom2, int marker2,
                            std::string_view name) {
  const int code = MessageCode();
  if (code == 2101) PrintCurrent({chrom});
  else if (code == 2102) PrintCurrent({count, chrom});
  else if (InRange(code, 2103, 2107)) PrintCurrent({chrom, marker});
  else if (code == 2108 || code == 2109) PrintCurrent({chrom, marker, chrom2, marker2, name});
}

void PrintMarkerMessage(int marker, int line, std::string_view token) {
  const int code = MessageCode();
  if (!InRange(code, 2201, 2230)) return;
  switch (code) {
    case 2202: case 2203: case 2204: case 2205: case 2206:
    case 2211: case 2212: case 2215:
      PrintCurrent({marker, line, token});
      return;
    case 2209: case 2213: case 2214: case 2216: case 2225: case 2226:
      PrintCurrent({marker, token});
      return;
    case 2227: case 2230:
      PrintCurrent({marker, line, token});
      return;
    case 2229:
      PrintCurrent({marker, line});
      return;
    default:
      PrintCurrent({marker});
  }
}

void PrintAnchorMessage(int marker, int anchor, std::string_view name1, std::string_view name2) {
  const int code = MessageCode();
  if (code == 2301) PrintCurrent({marker, name1});
  else if (code == 2302) PrintCurrent({marker, fmt::Trim(name1), fmt::Trim(name2)});
  else if (code == 2303) PrintCurrent({marker, anchor});
}

void PrintPhenotypeMessage(int row, std::string_view token) {
  const int code = MessageCode();
  if (InRange(code, 2401, 2407)) PrintCurrent({row, token});
}

void PrintNameMismatchMessage(int chrom, int marker, int row, std::string_view map_name,
                              std::string_view marker_name) {
  if (MessageCode() == 2501) PrintCurrent({map_name, chrom, marker, marker_name, row});
}

void PrintOutlierMessage(int trait, int sample, float value, float stat) {
  const int code = MessageCode();
  if (!InRange(code, 2701, 2703)) return;
  // Warnings for the log only: the run goes on and standard output stays quiet.
  std::vector<std::string> lines =
      code == 2701 ? MessageLines(code, {})
                   : MessageLines(code, {MsgArg::Field(fmt::I(trait, 12)),
                                         MsgArg::Field(fmt::I(sample, 12)),
                                         MsgArg::Field(fmt::F(value, 12, 4)),
                                         MsgArg::Field(fmt::F(stat, 12, 4))});
  for (const std::string& line : lines) ProcessRunLog().Write(line);
}

void PrintPairwiseMessage(int i, int j, float rec_freq, float lod, float minutes,
                          long long pairs) {
  const int code = MessageCode();
  if (!InRange(code, 2801, 2806)) return;
  if (code == 2802) {
    PrintCurrent({MsgArg::Field(fmt::LeftAdjust(fmt::I(i, 8))),
                  MsgArg::Field(fmt::LeftAdjust(fmt::I(j, 8))),
                  MsgArg::Field(fmt::LeftAdjust(fmt::F(rec_freq, 8, 4))),
                  MsgArg::Field(fmt::LeftAdjust(fmt::F(lod, 8, 2)))});
  } else if (code == 2803) {
    PrintCurrent({fmt::Trim(fmt::F(minutes, 8, 2))});
  } else if (code == 2806) {
    PrintCurrent({std::to_string(pairs)});  // a count of pairs can outgrow the I8 field
  } else {
    PrintCurrent({});
  }
}

}  // namespace gae
