// Where each marker of an imported file sits on the genome or on the user's own map: the side
// table that an import writes beside the input file it makes (`<stem>.loci.tsv`). The input
// grammar has no room for chromosome names or physical positions, yet a breeder wants the map's
// groups named as the chromosomes they know and compared with the physical order.
//
// The file is tab-separated text with a header line "marker<TAB>chromosome<TAB>position", one row
// per marker in the input file's order. A position is a plain number with a point for decimals
// (base pairs for sequence data, cM for an imported map); an unknown chromosome or position is an
// empty field.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace gae {

struct LocusRow {
  std::string marker;
  std::string chromosome;           // empty: not known
  std::optional<double> position;   // bp or cM, as the import had it
};

struct LocusTable {
  std::vector<LocusRow> rows;
};

// `<stem>.loci.tsv` of an input path (the stem as the result files have it).
std::string LocusTablePath(const std::string& input_path);

std::string LocusTableText(const LocusTable& table);

// Parses the text of a locus table. On a malformed line, returns nullopt and says why in `why`
// (the line number and what was wrong).
std::optional<LocusTable> ParseLocusTable(const std::string& text, std::string* why = nullptr);

// Reads the table beside `input_path`; nullopt when there is none or it cannot be read.
std::optional<LocusTable> ReadLocusTableBeside(const std::string& input_path,
                                               std::string* why = nullptr);

}  // namespace gae
