// What the two pictures of a finished map are drawn from: the summary reports of the run, the
// input file (for the marker numbers of the pair store, and a consensus's input maps) and the
// pairwise file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/tool_profile.h"
#include "plot_chart.h"
#include "plot_heatmap.h"

namespace gaecli {

// A tool's three letters in any case ("MAP", "CDM", "PLM", "CMP"), or a file name ending in a
// dot and those letters.
bool MapToolOf(const std::string& word_or_path, gae::MapTool& tool);

struct PlotSources {
  std::string stem;      // of the result files, where the pictures go too
  std::string lrd_path;
  int record_length = 2;
  MapChart chart;
  HeatMapData heat;      // all but the pair table, which the caller opens from `lrd_path`
  std::string pairs_problem;  // why the heat map cannot be drawn; empty when it can
  std::string file_name;      // of the input, for titles
  // Per group of the summary: its number and name in the reports, and the name the pictures
  // give it (the user's chromosome when the table of loci tells it).
  std::vector<int32_t> group_numbers;
  std::vector<std::string> report_group_names, group_names;
  std::vector<std::string> group_chromosomes;  // "" where the table does not tell
  std::vector<std::size_t> block_group;  // per chart block, the index of its group
  // Per mapped marker in map order, where the table of loci puts it; empty without a table.
  struct Locus {
    std::size_t group = 0;  // index into the groups
    std::string chromosome;
    std::optional<double> position;
    float cm = 0.0f;
  };
  std::vector<Locus> loci;
};

// Reads the run's summaries and the input file. False with a one-line `error` when a file is
// missing or the files do not belong together. A pairwise file that does not fit the input
// spoils only the heat map: it is told in `pairs_problem`.
bool LoadPlotSources(const std::string& input_path, gae::MapTool tool, PlotSources& out, std::string& error);

// Keeps only one group: `which` is its name as the pictures show it, its name in the reports, or
// its number. False with `error` naming the groups when there is no such group.
bool KeepOneGroup(const std::string& which, PlotSources& sources, std::string& error);

// The pair-store number of each name as a summary prints it (cut to 19 characters), matched
// against the input file's names in input order; a name cut to the same text as an earlier one
// takes the next marker of that text. -1 for a name the input does not hold.
std::vector<int64_t> MatchMarkerNumbers(const std::vector<std::string>& printed_names,
                                        const std::vector<std::string>& input_names);

}  // namespace gaecli
