// The pictures of a finished map: drawn from the reports and the pairwise file, read back here.
#include <gtest/gtest.h>

#include <cairo.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <numeric>
#include <random>
#include <set>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "vocabulary/fixed_format.h"
#include "vocabulary/pair_index.h"
#include "plot_cairo.h"
#include "plot_chart.h"
#include "plot_drawing.h"
#include "plot_group_names.h"
#include "plot_heatmap.h"
#include "plot_label_spread.h"
#include "plot_physical.h"
#include "plot_sources.h"
#include "plot_sum_file.h"
#include "report/map_layout.h"
#include "report/map_reports.h"
#include "report/text_file.h"
#include "support/command_run.h"
#include "support/pair_store.h"
#include "support/temp_dir.h"
#include "xml_check.h"

namespace gaecli {
bool operator==(const ChartTick& a, const ChartTick& b) { return a.name == b.name && a.position == b.position; }
void PrintTo(const ChartTick& t, std::ostream* os) { *os << t.name << " at " << t.position; }
}  // namespace gaecli

namespace gae {
namespace {

using gaecli::SpreadLabels;

TEST(LabelSpread, MovesCrowdedNamesApartAsLittleAsPossible) {
  // Names on one tick share the room evenly around it; names apart stay; against the top edge
  // the pair moves down only; a lone name keeps its place when the cluster does not reach it.
  const struct {
    std::vector<double> wanted;
    double pitch, top;
    std::vector<double> placed;
  } cases[] = {{{10, 10, 10}, 2.0, -100, {8, 10, 12}}, {{0, 5, 10}, 2.0, -100, {0, 5, 10}},
               {{0, 0}, 4.0, 0.0, {0, 4}}, {{50, 1, 1, 1}, 3.0, -100, {50, -2, 1, 4}}};
  for (const auto& c : cases) {
    const std::vector<double> y = SpreadLabels(c.wanted, c.pitch, c.top, 100);
    ASSERT_EQ(y.size(), c.placed.size());
    for (std::size_t k = 0; k < y.size(); ++k) EXPECT_NEAR(y[k], c.placed[k], 1e-9) << k;
  }
  // Random columns, sorted or not, fitting or not: order kept, no two names closer than the pitch,
  // inside the bounds whenever they fit there.
  std::mt19937 random(7);
  for (int trial = 0; trial < 300; ++trial) {
    const int n = 1 + static_cast<int>(random() % 80);
    const double pitch = 1.0 + (random() % 100) / 10.0;
    std::uniform_real_distribution<double> at(0.0, 400.0);
    std::vector<double> wanted(n);
    for (double& w : wanted) w = std::round(at(random));
    if (trial % 2 == 0) std::sort(wanted.begin(), wanted.end());
    const std::vector<double> placed = SpreadLabels(wanted, pitch, 0.0, 400.0);
    std::vector<int> rank(n);
    std::iota(rank.begin(), rank.end(), 0);
    std::stable_sort(rank.begin(), rank.end(), [&](int a, int b) { return wanted[a] < wanted[b]; });
    for (int k = 1; k < n; ++k) ASSERT_GE(placed[rank[k]] - placed[rank[k - 1]], pitch - 1e-9) << trial;
    if ((n - 1) * pitch <= 400.0) {
      for (double p : placed) ASSERT_TRUE(p >= -1e-9 && p <= 400.0 + 1e-9) << trial;
    }
  }
}

using Store = testing::MemoryStore;

// The contents of every <text> element of an SVG, entities resolved.
std::vector<std::string> SvgTexts(const std::string& svg) {
  std::vector<std::string> texts;
  const std::regex element(R"(<text\b[^>]*>([^<]*)</text>)");
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), element); it != std::sregex_iterator(); ++it) {
    std::string t = (*it)[1];
    for (auto [entity, c] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}})
      for (std::size_t at; (at = t.find(entity)) != std::string::npos;) t.replace(at, std::string(entity).size(), c);
    texts.push_back(t);
  }
  return texts;
}

struct Png {
  explicit Png(const std::string& path) : surface(cairo_image_surface_create_from_png(path.c_str())) {}
  ~Png() { cairo_surface_destroy(surface); }
  int Width() const { return cairo_image_surface_get_width(surface); }
  int Height() const { return cairo_image_surface_get_height(surface); }
  gaecli::Rgb At(int x, int y) const {
    const unsigned char* row = cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    const uint32_t v = reinterpret_cast<const uint32_t*>(row)[x];
    return {static_cast<uint8_t>(v >> 16), static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)};
  }
  cairo_surface_t* surface;
};

class Pictures : public testing::InTempDir {};

std::vector<std::string> Titles(const std::vector<gaecli::ChartBar>& bars) {
  std::vector<std::string> titles;
  for (const gaecli::ChartBar& b : bars) titles.push_back(b.title);
  return titles;
}

// Six F2 markers; two long names print alike in the summary ("LongMarkerNameNumbe").
// Chromsome1: 3, 2, 1 at 0, 12.5, 30.25 cM; Chromsome2: 4, 6 at 0, 45 cM; 5 unlinked.
TEST_F(Pictures, MapChartAndHeatMapFollowTheSummaryAndThePairFile) {
  const std::vector<std::string> names = {"M1", "LongMarkerNameNumber_A", "M3", "LongMarkerNameNumber_B", "M5", "M6"};
  std::string input = "7\n1\n1\n6\n4\n";
  const char* rows[] = {"A H B A", "H H A B", "B A H H", "A A B H", "H B A A", "B H H A"};
  for (int m = 0; m < 6; ++m) input += names[m] + " " + rows[m] + "\n";
  for (const std::string& n : names) input += n + " 0\n";
  testing::WriteText("small.map", input);
  Store store(6);
  for (int i = 2; i <= 6; ++i)
    for (int j = 1; j < i; ++j) store.Set(i, j, 3.0f, 0.3f);
  store.Set(3, 2, 20.0f, 0.0f);   // tightest: past the LOD cap
  store.Set(3, 1, 6.0f, 0.25f);   // half way on both scales
  store.Set(4, 6, 0.0f, 0.5f);    // unlinked
  store.Set(2, 4, 9.0f, 0.98f);   // linked with one marker's alleles switched
  store.Set(1, 6, 2.0f, 0.9f);    // a frequency past one half without the LOD to back it
  store.Write("small.LRD");
  MapLayout layout;
  layout.population_type = 7;
  layout.num_markers = 6;
  layout.num_mapped = 5;
  layout.num_unlinked = 1;
  for (const std::string& n : names) layout.marker_names.push_back(fmt::PadRight(n, 35));
  layout.anchor.assign(6, 0);
  layout.chromosome_names = {fmt::PadRight("Chromsome1", 19), fmt::PadRight("Chromsome2", 19)};
  layout.chromosome_sizes = {3, 2};
  layout.order = {3, 2, 1, 4, 6, 5};
  layout.position = {0.0f, 12.5f, 30.25f, 0.0f, 45.0f};
  ASSERT_TRUE(WriteTextFile("small.sum", SumReport(layout, store.Table())));
  gaecli::PlotSources sources;
  std::string error;
  ASSERT_TRUE(gaecli::LoadPlotSources("small.map", gae::MapTool::kMAP, sources, error)) << error;
  EXPECT_EQ(sources.pairs_problem, "");
  ASSERT_EQ(sources.chart.blocks.size(), 2u);
  const gaecli::ChartBar& first = sources.chart.blocks[0].bars.at(0);
  EXPECT_EQ(sources.chart.blocks[0].title, "Chromsome1");
  ASSERT_EQ(first.ticks.size(), 3u);
  EXPECT_EQ(first.ticks[1], (gaecli::ChartTick{"LongMarkerNameNumber_A", 12.5f}));  // whole, though the summary cuts it
  EXPECT_EQ(first.ticks[2], (gaecli::ChartTick{"M1", 30.25f}));
  EXPECT_EQ(sources.chart.blocks[1].bars.at(0).ticks.at(1), (gaecli::ChartTick{"M6", 45.0f}));
  // The like-printed names go to their markers in input order.
  EXPECT_EQ(sources.heat.markers, (std::vector<int64_t>{3, 2, 1, 4, 6}));
  // Every tick stands at its position on one cM scale, and no two names touch.
  const gaecli::ChartGeometry g = gaecli::LayOutChart(sources.chart, gaecli::CairoTextWidth);
  ASSERT_EQ(g.rows.size(), 1u);
  const gaecli::ChartRow& row = g.rows[0];
  for (std::size_t b = 0; b < g.blocks.size(); ++b) {
    const auto& ticks = g.blocks[b].at(0).ticks;
    const auto& source = sources.chart.blocks[b].bars[0].ticks;
    for (std::size_t k = 0; k < ticks.size(); ++k) {
      EXPECT_EQ(ticks[k].name, source[k].name);
      EXPECT_NEAR(ticks[k].tick_y, g.Y(row, source[k].position), 1e-9);
      if (k > 0) {
        EXPECT_GE(ticks[k].label_y - ticks[k - 1].label_y, g.pitch - 1e-9);
      }
    }
  }
  EXPECT_GT(g.blocks[1][0].x, g.blocks[0][0].column_right);
  // The SVG written as text: the names are text elements, and each marker's tick crosses its
  // bar at the height of its .sum position.
  const std::string svg = gaecli::SvgText(gaecli::DrawChart(sources.chart, g));
  const testing::XmlCheck xml = testing::CheckXml(svg);
  ASSERT_TRUE(xml.ok) << xml.error;
  EXPECT_EQ(xml.root, "svg");
  EXPECT_NE(xml.root_attributes.find("font-family=\"DejaVu Sans,"), std::string::npos) << xml.root_attributes;
  const std::vector<std::string> texts = SvgTexts(svg);
  const std::pair<const char*, long> counts[] = {{"M3", 1}, {"LongMarkerNameNumber_A", 1}, {"LongMarkerNameNumber_B", 1}, {"M1", 1}, {"M6", 1},
                                                 {"Chromsome1", 1}, {"Chromsome2", 1}, {"M5", 0}};  // M5: unlinked
  for (const auto& [name, count] : counts) EXPECT_EQ(std::count(texts.begin(), texts.end(), name), count) << name;
  const std::regex segment(R"(M([-0-9.]+) ([-0-9.]+)L([-0-9.]+) ([-0-9.]+))");
  std::vector<std::array<double, 4>> lines;
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), segment); it != std::sregex_iterator(); ++it)
    lines.push_back({std::stod((*it)[1]), std::stod((*it)[2]), std::stod((*it)[3]), std::stod((*it)[4])});
  for (std::size_t b = 0; b < 2; ++b) {
    const gaecli::PlacedBar& bar = g.blocks[b][0];
    for (const gaecli::ChartTick& t : sources.chart.blocks[b].bars[0].ticks) {
      const double y = g.Y(row, t.position);
      const bool found = std::any_of(lines.begin(), lines.end(), [&](const std::array<double, 4>& l) {
        return std::abs(l[1] - y) < 5e-3 && std::abs(l[3] - y) < 5e-3 && l[0] < bar.x && l[2] > bar.x + 5.0;
      });
      EXPECT_TRUE(found) << t.name;
    }
  }
  sources.heat.pairs = store.Table();
  const gaecli::HeatGeometry h = gaecli::LayOutHeatMap(sources.heat);
  ASSERT_TRUE(gaecli::WriteDrawing(gaecli::DrawHeatMap(sources.heat, h), gaecli::PictureFormat::kPng, "small.rf.png", error))
      << error;
  // Five markers get 40-pixel cells, and the two groups a 2-pixel boundary.
  EXPECT_EQ(h.cell, 40);
  EXPECT_EQ(h.matrix_side, 5 * 40 + 2);
  EXPECT_EQ(h.name_font, 10.0);  // cells that tall carry the markers' names
  const Png png("small.rf.png");
  ASSERT_EQ(png.Width(), h.width);
  ASSERT_EQ(png.Height(), h.height);
  // Centre of the cell in map-order row r and column c.
  auto cell = [&](int r, int c) {
    auto at = [&](int k) { return k * 40 + (k >= 3 ? 2 : 0) + 20; };
    return png.At(h.matrix_left + at(c), h.matrix_top + at(r));
  };
  // Frequency above the diagonal, LOD below: tight past the LOD cap of 12, half way at 0.25 and
  // LOD 6, none at 0.5 and LOD 0; a switched pair on both sides; 0.9 without LOD clipped to 0.5.
  const gaecli::Rgb tight{165, 0, 38}, middle{255, 255, 191}, none{49, 54, 149}, diagonal{32, 32, 32};
  const std::tuple<int, int, gaecli::Rgb> cells[] = {
      {0, 1, tight}, {1, 0, tight}, {0, 2, middle}, {2, 0, middle}, {3, 4, none}, {4, 3, none},
      {1, 3, gaecli::kSwitchedColour}, {3, 1, gaecli::kSwitchedColour}, {2, 4, none}, {2, 2, diagonal}};
  for (const auto& [r, c, colour] : cells) EXPECT_EQ(cell(r, c), colour) << r << "," << c;
  EXPECT_EQ(png.At(h.matrix_left + 3 * 40, h.matrix_top + 20), (gaecli::Rgb{255, 255, 255}));  // the boundary
  // One group, by its number or its name in the reports: its own run of markers only.
  for (const char* which : {"2", "Chromsome2"}) {
    gaecli::PlotSources one = sources;
    ASSERT_TRUE(gaecli::KeepOneGroup(which, one, error)) << error;
    ASSERT_EQ(one.chart.blocks.size(), 1u);
    EXPECT_EQ(one.chart.blocks[0].bars[0].ticks.size(), 2u);
    EXPECT_EQ(one.heat.markers, (std::vector<int64_t>{4, 6}));
    EXPECT_EQ(one.heat.names, (std::vector<std::string>{"LongMarkerNameNumber_B", "M6"}));
    ASSERT_EQ(one.heat.groups.size(), 1u);
    EXPECT_EQ(gaecli::LayOutHeatMap(one.heat).slots.size(), 2u);
  }
  EXPECT_FALSE(gaecli::KeepOneGroup("3", sources, error));
  EXPECT_EQ(error, "no group 3; the groups are 1 Chromsome1, 2 Chromsome2");
  // As SVG the heat map keeps the names as text on both axes, and embeds the matrix as a PNG of
  // the matrix's size.
  const std::string heat_svg = gaecli::SvgText(gaecli::DrawHeatMap(sources.heat, h));
  ASSERT_TRUE(testing::CheckXml(heat_svg).ok);
  const std::vector<std::string> heat_texts = SvgTexts(heat_svg);
  EXPECT_EQ(std::count(heat_texts.begin(), heat_texts.end(), "M6"), 2);
  EXPECT_EQ(std::count(heat_texts.begin(), heat_texts.end(), "LongMarkerNameNumber_B"), 2);
  std::smatch embedded;
  ASSERT_TRUE(std::regex_search(heat_svg, embedded, std::regex("base64,([A-Za-z0-9+/=]+)")));
  std::string bytes;
  uint32_t bits = 0;
  int count = 0;
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (char c : embedded[1].str()) {
    if (c == '=') break;
    bits = (bits << 6) | static_cast<uint32_t>(digits.find(c));
    if ((count += 6) >= 8) bytes += static_cast<char>((bits >> (count -= 8)) & 0xFF);
  }
  ASSERT_GT(bytes.size(), 24u);
  EXPECT_EQ(bytes.substr(1, 3), "PNG");
  auto be32 = [&](std::size_t at) {
    return (static_cast<uint8_t>(bytes[at]) << 24) | (static_cast<uint8_t>(bytes[at + 1]) << 16) |
           (static_cast<uint8_t>(bytes[at + 2]) << 8) | static_cast<uint8_t>(bytes[at + 3]);
  };
  EXPECT_EQ(be32(16), h.matrix_side);  // the header's width and height
  EXPECT_EQ(be32(20), h.matrix_side);
}

// A summary of one group "Chromsome1" in the fixed columns of the reports. The tool's further
// columns: `header_tail` after the first five headers, `extra` after each marker row.
std::string OneGroupSummary(const std::vector<std::string>& markers, const std::vector<float>& positions,
                            const std::string& header_tail, const std::string& extra) {
  auto field = [](const std::string& s) { return fmt::A(s, 20); };
  std::string sum;
  for (const char* h : {"ChromsomeID", "ChromosomeName", "MarkerName", "Interval(cM)", "Position(cM)"}) sum += field(h);
  sum += header_tail + "\n";
  for (std::size_t k = 0; k < markers.size(); ++k) {
    sum += fmt::I(1, 20) + fmt::A("Chromsome1", 20) + " " + fmt::A(markers[k], 19) +
           fmt::F(k == 0 ? 0.0 : positions[k] - positions[k - 1], 20, 4) + fmt::F(positions[k], 20, 4) + extra + "\n";
  }
  const int n = static_cast<int>(markers.size());
  const double length = markers.empty() ? 0.0 : positions.back() - positions.front();
  sum += "\n";
  sum += field("ChromosomeID") + field("ChromosomeName") + field("NumMarkers") + field("ChromLength(cM)") + "\n";
  sum += fmt::I(1, 20) + " " + fmt::A("Chromsome1", 19) + fmt::I(n, 20) + fmt::F(length, 20, 4) + "\n";
  sum += field("WholeGenome") + field("WholeGenome") + fmt::I(n, 20) + fmt::F(length, 20, 4) + "\n\n";
  sum += field("UnlinkedMarkerID") + field("MarkerName") + "\n\n" + field("DeletedMarkerID") + field("MarkerName") + "\n";
  return sum;
}

// A clonal map: the bundled clonal F1's markers, the parents' maps beside the combined one.
TEST_F(Pictures, ClonalChartSetsTheParentsMapsBesideTheCombinedMap) {
  testing::WriteText("cf1.cdm", testing::ReadText(testing::SourcePath("examples/clonal_f1.cdm")));
  const std::string rf = fmt::F(0.1, 20, 4);
  // CM03 (A=B) tells nothing of the first parent, CM04 (C=D) nothing of the second.
  testing::WriteText("cf1.sum", OneGroupSummary({"CM01", "CM02", "CM03", "CM04"}, {0.0f, 3.5f, 12.0f, 20.0f}, fmt::A("RecomFrequency", 20), rf));
  testing::WriteText("cf1.sumf", OneGroupSummary({"CM01", "CM02", "CM04"}, {0.0f, 4.0f, 24.0f}, fmt::A("RecomFrequency", 20), rf));
  gaecli::PlotSources sources;
  std::string error;
  EXPECT_FALSE(gaecli::LoadPlotSources("cf1.cdm", gae::MapTool::kCDM, sources, error));
  EXPECT_NE(error.find("cf1.summ is missing"), std::string::npos) << error;
  testing::WriteText("cf1.summ", OneGroupSummary({"CM01", "CM02", "CM03"}, {0.0f, 3.0f, 10.0f}, fmt::A("RecomFrequency", 20), rf));
  ASSERT_TRUE(gaecli::LoadPlotSources("cf1.cdm", gae::MapTool::kCDM, sources, error)) << error;
  ASSERT_EQ(sources.chart.blocks.size(), 1u);
  const auto& bars = sources.chart.blocks[0].bars;
  EXPECT_EQ(Titles(bars), (std::vector<std::string>{"Parent 1", "Combined", "Parent 2"}));
  EXPECT_EQ(bars[0].ticks.back(), (gaecli::ChartTick{"CM04", 24.0f}));
  EXPECT_EQ(bars[2].ticks.back(), (gaecli::ChartTick{"CM03", 10.0f}));
  EXPECT_EQ(sources.heat.markers, (std::vector<int64_t>{1, 2, 3, 4}));
  EXPECT_EQ(sources.record_length, 7);
  EXPECT_TRUE(sources.heat.lower_is_lod);
}

// A consensus: the input maps of the bundled 3B example beside a hand-written consensus summary.
TEST_F(Pictures, ConsensusChartJoinsEachInputMapToTheConsensus) {
  testing::WriteText("c3b.cmp", testing::ReadText(testing::SourcePath("examples/three_maps_3b.cmp")));
  // NumMaps, then the place of the marker on each of the three maps.
  const std::string sum = OneGroupSummary({"gwm100", "gwm113", "gwm126"}, {0.0f, 5.5f, 7.25f},
                                          fmt::A("NumMaps", 20) + fmt::I(1, 20) + fmt::I(2, 20) + fmt::I(3, 20),
                                          fmt::I(2, 20) + fmt::I(1, 20) + fmt::I(1, 20) + fmt::I(0, 20));
  testing::WriteText("c3b.sum", sum);
  gaecli::PlotSources sources;
  std::string error;
  ASSERT_TRUE(gaecli::LoadPlotSources("c3b.cmp", gae::MapTool::kCMP, sources, error)) << error;
  // Three input maps share markers with the consensus: two blocks, the consensus in each.
  ASSERT_EQ(sources.chart.blocks.size(), 2u);
  const auto& block = sources.chart.blocks[0].bars;
  EXPECT_EQ(Titles(block), (std::vector<std::string>{"PopA_3B", "Consensus", "PopB_3B"}));
  EXPECT_EQ(Titles(sources.chart.blocks[1].bars), (std::vector<std::string>{"PopC_3B", "Consensus"}));
  EXPECT_EQ(block[0].ticks.size(), 14u);
  EXPECT_FLOAT_EQ(block[0].ticks[0].position, 9.3f);
  EXPECT_EQ(block[1].ticks[2], (gaecli::ChartTick{"gwm126", 7.25f}));
  // The consensus store holds no LOD; there is no store here at all.
  EXPECT_FALSE(sources.heat.lower_is_lod);
  EXPECT_NE(sources.pairs_problem, "");
  const std::string svg = gaecli::SvgText(gaecli::DrawChart(sources.chart, gaecli::LayOutChart(sources.chart, gaecli::CairoTextWidth)));
  const testing::XmlCheck xml = testing::CheckXml(svg);
  EXPECT_TRUE(xml.ok) << xml.error;
  const std::vector<std::string> texts = SvgTexts(svg);
  for (const char* title : {"PopA_3B", "PopC_3B", "Consensus", "gwm126"})
    EXPECT_NE(std::find(texts.begin(), texts.end(), title), texts.end()) << title;
  // A summary that does not add up is refused, not drawn.
  gaecli::SumFile parsed;
  std::string broken = sum;
  const std::string row = fmt::I(3, 20) + fmt::F(7.25, 20, 4);
  broken.replace(broken.find(row), row.size(), fmt::I(4, 20) + fmt::F(7.25, 20, 4));
  EXPECT_FALSE(gaecli::ParseSumText(broken, parsed, error));
  EXPECT_TRUE(gaecli::ParseSumText(sum, parsed, error)) << error;
}

// Random maps of many groups: each drawn group stands whole on one row inside the width, rows
// follow the groups' order without overlapping, every row has its own scale, and groups of one
// marker are listed under the chart instead.
TEST(ChartRows, WrappingKeepsEveryGroupWholeOnOneRow) {
  std::mt19937 random(11);
  const gaecli::TextWidth width = [](const std::string& text, double size) { return 0.6 * size * text.size(); };
  for (int trial = 0; trial < 60; ++trial) {
    gaecli::MapChart chart;
    chart.title = "random";
    const int groups = 1 + static_cast<int>(random() % 40);
    std::set<std::string> single;
    for (int b = 0; b < groups; ++b) {
      // Names are the user's: markup characters in them stay text.
      gaecli::ChartBlock block{b == 0 ? "R&D <1>" : "G" + std::to_string(b), {}};
      const int bars = trial % 3 == 0 ? 1 + static_cast<int>(random() % 3) : 1;
      for (int k = 0; k < bars; ++k) {
        gaecli::ChartBar bar{"map" + std::to_string(k), {}};
        const int n = random() % 4 == 0 ? 1 : 2 + static_cast<int>(random() % 30);
        float cm = 0.0f;
        for (int m = 0; m < n; ++m, cm += static_cast<float>(random() % 80) / 10.0f)
          bar.ticks.push_back({std::string(1 + random() % 12, 'x').append(std::to_string(m)), cm});
        if (b == 0) bar.ticks[0].name = "a&b<\"c\">";
        block.bars.push_back(std::move(bar));
      }
      if (!gaecli::IsDrawn(block)) single.insert(block.title);
      chart.blocks.push_back(std::move(block));
    }
    const gaecli::ChartGeometry g = gaecli::LayOutChart(chart, width);
    std::vector<std::size_t> placed;
    double previous_bottom = 0.0;
    for (const gaecli::ChartRow& row : g.rows) {
      double top = 1e300, bottom = -1e300, left = 1e300;
      for (std::size_t b : row.blocks) {
        placed.push_back(b);
        for (const gaecli::PlacedBar& bar : g.blocks[b]) {
          left = std::min(left, bar.x);
          ASSERT_LE(bar.column_right, row.right + 1e-9) << trial;
          for (const gaecli::PlacedTick& t : bar.ticks) {
            top = std::min({top, t.tick_y, t.label_y});
            bottom = std::max({bottom, t.tick_y, t.label_y});
          }
        }
      }
      // Past the width only a group that is wider by itself.
      if (row.blocks.size() > 1) {
        ASSERT_LE(row.right, gaecli::kChartMaxWidth) << trial;
      }
      ASSERT_GT(top, previous_bottom) << trial;
      ASSERT_GE(row.zero_y + (row.min_cm - g.min_cm) * g.px_per_cm, row.title_y) << trial;
      previous_bottom = bottom;
    }
    std::vector<std::size_t> drawn;
    for (std::size_t b = 0; b < chart.blocks.size(); ++b)
      if (gaecli::IsDrawn(chart.blocks[b])) drawn.push_back(b);
    ASSERT_EQ(placed, drawn) << trial;
    const std::string svg = gaecli::SvgText(gaecli::DrawChart(chart, g));
    const testing::XmlCheck xml = testing::CheckXml(svg);
    ASSERT_TRUE(xml.ok) << xml.error;
    const std::vector<std::string> texts = SvgTexts(svg);
    ASSERT_EQ(std::count(texts.begin(), texts.end(), "cM"), static_cast<long>(g.rows.size())) << trial;
    if (gaecli::IsDrawn(chart.blocks[0])) {
      ASSERT_NE(std::find(texts.begin(), texts.end(), chart.blocks[0].bars[0].ticks[0].name), texts.end());
    }
    // Each group of one marker in the note, its marker a text of its own right after it.
    std::set<std::string> noted;
    for (std::size_t k = 1; k < g.note.size(); k += 2) {
      ASSERT_TRUE(g.note[k + 1].is_marker);
      const auto block = std::find_if(chart.blocks.begin(), chart.blocks.end(),
                                      [&](const gaecli::ChartBlock& b) { return b.title == g.note[k].text; });
      ASSERT_NE(block, chart.blocks.end());
      ASSERT_EQ(g.note[k + 1].text, block->bars[0].ticks[0].name);
      ASSERT_LE(g.note[k + 1].x + width(g.note[k + 1].text, 11.0), g.width) << trial;
      noted.insert(g.note[k].text);
    }
    ASSERT_EQ(noted, single) << trial;
  }
}

TEST(GroupNames, TheChromosomeMostMarkersComeFrom) {
  struct Case {
    std::vector<std::vector<std::string>> chromosomes;  // of each group's markers, "" unknown
    std::vector<std::string> names, chosen;
  };
  const std::vector<std::string> reports = {"Chromsome1", "Chromsome2", "Chromsome3"};
  const Case cases[] = {
      {{{"1A", "1A", "2B"}, {"2B"}, {}}, {"1A", "2B", "Chromsome3"}, {"1A", "2B", ""}},
      {{{"", ""}, {"3D"}, {}}, {"Chromsome1", "3D", "Chromsome3"}, {"", "3D", ""}},  // nothing known
      {{{"1A", "2B", "2B", "1A"}, {}, {}}, {"1A", "Chromsome2", "Chromsome3"}, {"1A", "", ""}},  // tie: first
      {{{"1A"}, {"5"}, {"1A", ""}}, {"1A.1", "5", "1A.2"}, {"1A", "5", "1A"}},  // one chromosome, two groups
  };
  for (const Case& c : cases) {
    std::vector<std::string> chosen;
    EXPECT_EQ(gaecli::NameGroups(c.chromosomes, reports, &chosen), c.names);
    EXPECT_EQ(chosen, c.chosen);
  }
}

// Map against genome: a panel per chromosome in the genome's order, holding the markers of the
// groups named after it that the table puts there with a position.
TEST(PhysicalPanels, ChromosomesInGenomeOrderWithTheirOwnMarkers) {
  gaecli::PlotSources s;
  s.group_names = {"10H", "2H.1", "Chromsome3", "2H.2"};
  s.group_chromosomes = {"10H", "2H", "", "2H"};
  using L = gaecli::PlotSources::Locus;
  s.loci = {L{0, "10H", 5e6, 0.0f}, L{0, "10H", 9e6, 12.0f}, L{0, "2H", 1e6, 20.0f},  // the last: elsewhere
            L{1, "2H", 3e6, 0.0f},  L{1, "2H", std::nullopt, 4.0f},                  // no position
            L{2, "7H", 2e6, 0.0f},  L{3, "2H", 8e7, 0.0f},  L{3, "2H", 9e7, 30.0f}};
  const std::vector<gaecli::PhysicalPanel> panels = gaecli::PhysicalPanels(s);
  ASSERT_EQ(panels.size(), 2u);
  EXPECT_EQ(panels[0].chromosome, "2H");
  EXPECT_EQ(panels[0].groups, (std::vector<std::string>{"2H.1", "2H.2"}));
  ASSERT_EQ(panels[0].dots.size(), 3u);
  EXPECT_EQ(panels[0].dots[2].series, 1u);
  EXPECT_DOUBLE_EQ(panels[0].dots[2].cm, 30.0);
  EXPECT_EQ(panels[1].chromosome, "10H");
  EXPECT_EQ(panels[1].dots.size(), 2u);
  const std::vector<std::string> texts = SvgTexts(gaecli::SvgText(gaecli::DrawPhysical("t", panels)));
  EXPECT_EQ(std::count(texts.begin(), texts.end(), "Physical position (Mb)"), 2);
}

// One group of the bundled example by its user's name (a table of loci beside the input), as
// PDF: the chart holds exactly that group's markers, and the map against the genome is drawn.
TEST_F(Pictures, OneGroupByTheUsersChromosomeName) {
  testing::WriteText("f2.map", testing::ReadText(testing::SourcePath("examples/f2_five_chromosomes.map")));
  ASSERT_EQ(testing::Gaengine("--seed 31 map --plots f2.map").exit_code, 0);
  EXPECT_TRUE(testing::CheckXml(testing::ReadText("f2.map.svg")).ok);
  EXPECT_TRUE(Png("f2.rf.png").Width() > 0);
  gaecli::SumFile sum;
  std::string error;
  ASSERT_TRUE(gaecli::ParseSumText(testing::ReadText("f2.sum"), sum, error)) << error;
  // Markers C<k>M.. come from chromosome k: call it "<k>H", at 1 Mb per marker number.
  std::string loci = "marker\tchromosome\tposition\n";
  for (const gaecli::SumMarker& m : sum.markers)
    loci.append(m.name).append("\t").append(m.name.substr(1, 1)).append("H\t").append(std::to_string(std::stoi(m.name.substr(3)) * 1000000)).append("\n");
  testing::WriteText("f2.loci.tsv", loci);
  const std::string group = sum.markers.front().name.substr(1, 1) + "H";
  ASSERT_EQ(testing::Gaengine("plot f2.map --group " + group).exit_code, 0);
  std::set<std::string> expected, shown, all;
  for (const gaecli::SumMarker& m : sum.markers) {
    all.insert(m.name);
    if (m.group == sum.markers.front().group) expected.insert(m.name);
  }
  const std::string svg = testing::ReadText("f2." + group + ".map.svg");
  ASSERT_TRUE(testing::CheckXml(svg).ok);
  for (const std::string& t : SvgTexts(svg))
    if (all.count(t)) shown.insert(t);
  EXPECT_EQ(shown, expected);
  EXPECT_LT(svg.size(), 2048 * expected.size());
  // A dot for each of the group's markers: the table puts them all on the group's chromosome.
  const std::string physical_svg = testing::ReadText("f2." + group + ".physical.svg");
  std::size_t dots = 0;
  for (std::size_t at = 0; (at = physical_svg.find("<circle ", at)) != std::string::npos; ++at) ++dots;
  EXPECT_EQ(dots, expected.size());
  const std::vector<std::string> physical = SvgTexts(physical_svg);
  EXPECT_NE(std::find(physical.begin(), physical.end(), group), physical.end());
  EXPECT_NE(std::find(physical.begin(), physical.end(), "Physical position (Mb)"), physical.end());
  const testing::CommandRun missing = testing::Gaengine("plot f2.map --group 9H");
  EXPECT_NE(missing.exit_code, 0);
  EXPECT_NE(missing.out.find("no group 9H; the groups are 1 "), std::string::npos);
  // The PDF keeps its text as text: where poppler's pdftotext is at hand, it reads the names back.
  ASSERT_EQ(testing::Gaengine("plot f2.map --format pdf").exit_code, 0);
  ASSERT_TRUE(testing::FileExists("f2.map.pdf"));
  EXPECT_EQ(testing::ReadText("f2.map.pdf").substr(0, 5), "%PDF-");
  if (std::system("pdftotext -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is not installed";
  ASSERT_EQ(std::system("pdftotext f2.map.pdf f2.map.txt"), 0);
  const std::string text = testing::ReadText("f2.map.txt");
  for (const std::string& name : all) EXPECT_NE(text.find(name), std::string::npos) << name;
}

}  // namespace
}  // namespace gae
