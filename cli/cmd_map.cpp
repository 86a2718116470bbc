// gaengine map FILE: a linkage map of a MAP, CDM or PLM file by the library's own pipeline, or
// with --front-end by the front end's default sequence of exports; the consensus of a CMP file.
#include <cstdio>
#include <string>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "consensus_run.h"
#include "engine/order_group.h"
#include "frame/tool_profile.h"
#include "map_command.h"
#include "map_gates.h"
#include "run_guard.h"
#include "run_settings.h"

namespace gaecli {

const gae::ToolProfile& InputTool(const std::string& file, const std::string& chosen) {
  // The three letters after the dot of an input name name the tool that reads it.
  const std::string letters = !chosen.empty() ? chosen : file.size() >= 4 ? file.substr(file.size() - 3) : "";
  const gae::ToolProfile* named = gae::ProfileOfLetters(letters);
  return named != nullptr ? *named : gae::ProfileOf(gae::MapTool::kMAP);
}

void RegisterMapCommand(CLI::App& app, int& exit_code) {
  auto* cmd = app.add_subcommand(
      "map", "Build a linkage map from a MAP, CDM or PLM input file, or the consensus of the maps of a CMP file, "
             "with gaengine's own pipeline (or the front end's sequence with --front-end)");
  static MapOptions o;
  cmd->add_option("file", o.file, "MAP, CDM, PLM or CMP input file")->required();
  cmd->add_option("--tool", o.tool, "MAP, CDM, PLM or CMP; by default from the file's extension (.cdm, .plm, .cmp; others MAP)")
      ->check(CLI::IsMember({"MAP", "CDM", "PLM", "CMP"}, CLI::ignore_case));
  cmd->add_option("--lod", o.lod,
                  "LOD threshold of grouping: a number, or \"auto\" for the lowest threshold of the longest "
                  "run over which the groups stay the same (default auto; 3 with --front-end, MAP files only)")
      ->check(CLI::Validator(
          [](const std::string& v) {
            float number = 0.0f;
            return v == "auto" || CLI::detail::lexical_cast(v, number) ? std::string()
                                                                       : "--lod takes a number or \"auto\", not \"" + v + "\"";
          },
          "NUMBER or auto"));
  cmd->add_option("--order", o.order,
                  "Ordering: \"default\", or \"frame\" to order the co-dominant markers first and insert the "
                  "dominant and recessive markers around them")
      ->check(CLI::IsMember({"default", "frame"}));
  cmd->add_option("--max-rf", o.max_rf,
                  "Grouping links a pair only if its recombination frequency is also below this (default 0.5; "
                  "with --front-end none, or 0.5 with --lod auto)")
      ->check(CLI::Range(0.0f, 1.0f));
  cmd->add_option("--error-rate", o.error_rate,
                  "Genotyping-error rate per call of the multipoint map (MAP files), fixed instead of estimated")
      ->check(CLI::Range(0.0f, 0.5f));
  cmd->add_flag("--no-bin", o.no_bin,
                "Map every marker itself; by default, from 3000 markers on, markers of the same genotypes are "
                "mapped once and the others placed at their representative's position");
  cmd->add_option("--bin-tolerance", o.bin_tolerance,
                  "Markers share a bin even if they differ on up to this share of the individuals typed in both "
                  "(default 0: identical but for missing calls); bins the run whatever its size")
      ->check(CLI::Range(0.0f, 0.2f));
  cmd->add_flag("--front-end", o.front_end,
                "Run the front end's default sequence of the library's exports instead of gaengine's own pipeline: "
                "the files the desktop program would write");
  RegisterStartsOption(*cmd);
  RegisterGuardOptions(*cmd);
  cmd->add_flag("--plots", o.plots, "Also draw the map chart (.map.svg) and the pairwise heat map (.rf.png)");
  cmd->add_flag("--tsv", o.tsv,
                "Also write the map as <stem>.map.tsv (group, marker, position, interval) and the pairs as "
                "<stem>.pairs.tsv (marker, marker, frequency, LOD), tab-separated");
  cmd->add_option("--min-lod", o.min_lod, "Pairs in <stem>.pairs.tsv: only those of at least this LOD")
      ->capture_default_str();
  cmd->add_flag("--force", o.force,
                "Map even when the data fit another population type better, or alleles look switched");
  cmd->add_option("--switch-alleles", o.switch_alleles,
                  "Markers to map with their alleles the other way round (NAME,NAME,...): written to <stem>_sw.map, "
                  "which is mapped")
      ->delimiter(',')
      ->allow_extra_args(false);
  cmd->callback([&exit_code] {
    const gae::ToolProfile& tool = InputTool(o.file, o.tool);
    const bool consensus = tool.id == gae::MapTool::kCMP;
    if (consensus && (!o.lod.empty() || o.order != "default" || o.max_rf >= 0.0f)) {
      // A consensus is one group of all markers ordered on distance: nothing here to choose.
      std::fprintf(stderr, "--lod, --order and --max-rf apply to MAP files only\n");
      exit_code = 2;
      return;
    }
    if ((consensus || o.front_end) && (o.no_bin || o.bin_tolerance >= 0.0f)) {
      std::fprintf(stderr, "--no-bin and --bin-tolerance apply to gaengine's own pipeline on MAP, CDM and PLM files\n");
      exit_code = 2;
      return;
    }
    if (o.no_bin && o.bin_tolerance >= 0.0f) {
      std::fprintf(stderr, "--no-bin and --bin-tolerance contradict each other\n");
      exit_code = 2;
      return;
    }
    if (consensus && Settings().starts > 0) {
      // The consensus ordering takes its own fixed number of starts; the seed still applies.
      std::fprintf(stderr, "--starts applies to MAP, CDM and PLM files; a consensus always orders with %d "
                   "random starts (--seed still chooses them)\n", gae::kConsensusStarts);
      exit_code = 2;
      return;
    }
    if (!consensus && !o.switch_alleles.empty()) {
      o.file = WriteSwitchedCopy(o.file, o.switch_alleles);
      if (o.file.empty()) {
        exit_code = 1;
        return;
      }
    }
    // The front end's sequence estimates its pairs the desktop program's way, checks included.
    if (o.front_end) Settings().front_end = true;
    exit_code = consensus ? RunConsensus(o.file) : o.front_end ? RunFrontEndMap(o) : RunPipelineMap(o);
    if (exit_code == 0 && o.plots) exit_code = WriteMapPictures(o.file, std::string(tool.letters));
  });
}

}  // namespace gaecli
