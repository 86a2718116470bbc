// The message catalogue: every word the engine says to a person, keyed by `MessageCode`.
//
// A routine that wants to say something stores a code in `MessageCode` and calls the printing
// routine of the code's family with the values its text needs. Error lines begin with the
// 13-character prefix "--Error" + I4 code + ": "; integer values stand in I8 fields,
// left-adjusted, their trailing blanks dropped; text values lose their trailing blanks.
// Each line goes to the run log and then to standard output.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace gae {

// One value of a message: an integer (I8, left-adjusted) or a text (trailing blanks dropped).
class MsgArg {
 public:
  MsgArg() = default;
  MsgArg(int value);              // NOLINT(google-explicit-constructor): reads like the text
  MsgArg(long long value);        // NOLINT
  MsgArg(std::string_view text);  // NOLINT
  MsgArg(const char* text);       // NOLINT
  MsgArg(const std::string& text);  // NOLINT
  // A value already laid out in its field, put in as it stands (blanks kept).
  static MsgArg Field(std::string field);
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// The lines of `code` with the values put in the order the text names them. Empty when the
// code is not in the catalogue.
std::vector<std::string> MessageLines(int code, std::initializer_list<MsgArg> args);
bool IsCatalogued(int code);

// Prints the lines of `code` (log, then standard output). Nothing for an unknown code.
void PrintMessage(int code, std::initializer_list<MsgArg> args);

// ---- The printing routines of the families. Each reads `MessageCode`, uses only the values
// its text names, and prints nothing for a code outside its family.

// 1101..1117. `name` is the DLL name of 1101/1102; t1, t2 are CPU clock readings for 1103
// (in seconds); `value` is the group number of 1109/1114 or the rejected option of 1105..1117.
void PrintFrameMessage(std::string_view name, float t1, float t2, int value);
// 2001..2032; 2029..2032 have no value.
void PrintHeaderMessage(int value);
// 2101..2109: `chrom` the chromosome number, `count` the rejected marker count of 2102,
// `marker` the marker number on the chromosome; 2108/2109 also the other chromosome, the other
// marker and the shared name.
void PrintChromosomeMessage(int chrom, int count, int marker, int chrom2, int marker2,
                            std::string_view name);
// 2201..2229: the marker number, the line (individual) number and the token or category text.
// 2230: `marker`, the earlier marker in `line`, the name in `token`.
void PrintMarkerMessage(int marker, int line, std::string_view token);
// 2301..2303.
void PrintAnchorMessage(int marker, int anchor, std::string_view name1, std::string_view name2);
// 2401..2407: the trait, environment or row number, and the trait name (2402, 2406) or the
// rejected token (2407).
void PrintPhenotypeMessage(int row, std::string_view token);
// 2501: chromosome, marker number on it, running marker number, map name, marker-section name.
void PrintNameMismatchMessage(int chrom, int marker, int row, std::string_view map_name,
                              std::string_view marker_name);
// 2701..2703, to the log only: 2701 the heading, 2702/2703 one row.
void PrintOutlierMessage(int trait, int sample, float value, float stat);
// 2801..2806 of the pairwise store: 2802 takes the pair, frequency and LOD; 2803 the minutes;
// 2806 the number of pairs stored as unlinked for want of an estimate.
void PrintPairwiseMessage(int i, int j, float rec_freq, float lod, float minutes,
                          long long pairs = 0);

// The 1103 line for CPU readings t1 and t2, in seconds.
std::string CpuTimeLine(float t1, float t2);

}  // namespace gae
