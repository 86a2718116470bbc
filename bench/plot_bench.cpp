// The pictures of a big map, from the files on disk to the written SVG and PNG: the summary and
// the input file are read, the chart is laid out and drawn, and every pair is read for the heat
// map. Ten groups; markers 1 cM apart within a group, frequencies by Haldane's function.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "vocabulary/pair_index.h"
#include "plot_cairo.h"
#include "plot_sources.h"
#include "report/map_layout.h"
#include "report/map_reports.h"
#include "report/text_file.h"
#include "twopoint/pair_store_file.h"

namespace {

std::string Pad(const std::string& s, std::size_t n) { return s + std::string(n - s.size(), ' '); }

// Writes stem.map (names and a token genotype), stem.LRD and stem.sum; returns the input path.
std::string WriteMapFiles(int markers) {
  const std::string stem = "/tmp/gaengine-bench-plot-" + std::to_string(markers);
  constexpr int kGroups = 10;
  const int per_group = markers / kGroups;
  std::vector<float> words(2 * gae::PairCount(markers));
  for (int i = 2; i <= markers; ++i) {
    for (int j = 1; j < i; ++j) {
      const bool same = (i - 1) / per_group == (j - 1) / per_group;
      const float r = same ? 0.5f * (1.0f - std::exp(-2.0f * static_cast<float>(i - j) / 100.0f)) : 0.5f;
      const float lod = same ? 200.0f * (0.5f - r) * (0.5f - r) : 0.0f;
      words[2 * (gae::GroupPairIndex(i, j) - 1)] = -lod;
      words[2 * (gae::GroupPairIndex(i, j) - 1) + 1] = r;
    }
  }
  std::ofstream(stem + ".LRD", std::ios::binary)
      .write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(words.size() * 4));

  gae::MapLayout layout;
  std::string input = "7\n1\n1\n" + std::to_string(markers) + "\n4\n";
  for (int m = 1; m <= markers; ++m) {
    const std::string name = "Marker" + std::to_string(m);
    layout.marker_names.push_back(Pad(name, 35));
    input += name + " A H B A\n";
    layout.order.push_back(m);
    layout.position.push_back(static_cast<float>((m - 1) % per_group));
  }
  for (int m = 1; m <= markers; ++m) input += "Marker" + std::to_string(m) + " 0\n";
  gae::WriteTextFile(stem + ".map", input);
  layout.num_markers = layout.num_mapped = markers;
  layout.anchor.assign(markers, 0);
  for (int g = 1; g <= kGroups; ++g) {
    layout.chromosome_names.push_back(Pad("Chromsome" + std::to_string(g), 19));
    layout.chromosome_sizes.push_back(per_group);
  }
  gae::PairTable table;
  table.records = words.data();
  table.num_records = static_cast<int64_t>(words.size() / 2);
  gae::WriteTextFile(stem + ".sum", gae::SumReport(layout, table));
  return stem + ".map";
}

void BM_MapPictures(benchmark::State& state) {
  const int markers = static_cast<int>(state.range(0));
  const std::string input = WriteMapFiles(markers);
  for (auto _ : state) {
    gaecli::PlotSources sources;
    std::string error;
    gae::PairStoreFile store;
    bool ok = false;
    {
      gae::bench::QuietStdout quiet;
      ok = gaecli::LoadPlotSources(input, gae::MapTool::kMAP, sources, error) && sources.pairs_problem.empty() &&
           gaecli::WriteDrawing(gaecli::DrawChart(sources.chart, gaecli::LayOutChart(sources.chart, gaecli::CairoTextWidth)),
                                gaecli::PictureFormat::kSvg, sources.stem + ".map.svg", error) &&
           store.Open(sources.lrd_path, sources.record_length, 1);
      if (ok) {
        sources.heat.pairs = store.Table();
        ok = gaecli::WriteDrawing(gaecli::DrawHeatMap(sources.heat, gaecli::LayOutHeatMap(sources.heat)),
                                  gaecli::PictureFormat::kPng, sources.stem + ".rf.png", error);
      }
    }
    if (!ok) state.SkipWithError(error.c_str());
  }
  state.counters["markers"] = markers;
}
BENCHMARK(BM_MapPictures)->Arg(2000)->Arg(5000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
