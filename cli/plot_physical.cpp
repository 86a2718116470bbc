#include "plot_physical.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

#include "plot_cairo.h"

namespace gaecli {

namespace {

constexpr double kMargin = 16.0, kTitleBand = 44.0;
constexpr double kPlotW = 260.0, kPlotH = 200.0;         // one panel's plotting area
constexpr double kLeftBand = 48.0, kBottomBand = 40.0, kTopBand = 24.0, kRightGap = 24.0;
constexpr int kColumns = 4;
constexpr double kFont = 10.0;
// Above this the positions are base pairs, shown in Mb; below it they are a map's own units.
constexpr double kBasePairs = 1.0e5;

constexpr Colour kInk{0, 0, 0}, kAxis{77, 77, 77}, kFrame{191, 191, 191};
constexpr Colour kSeries[] = {{31, 119, 180}, {214, 39, 40}, {44, 160, 44}, {148, 103, 189}, {255, 127, 14}, {140, 86, 75}};

// A round step giving about five divisions of `span`.
double NiceStep(double span) {
  if (span <= 0.0) return 1.0;
  const double raw = span / 5.0, power = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0})
    if (m * power >= raw) return m * power;
  return 10.0 * power;
}

struct Axis {
  double lo = 0.0, hi = 1.0, step = 1.0;
};

Axis AxisOver(double lo, double hi) {
  if (hi - lo <= 0.0) hi = lo + 1.0;
  Axis a;
  a.step = NiceStep(hi - lo);
  a.lo = std::floor(lo / a.step) * a.step;
  a.hi = std::ceil(hi / a.step) * a.step;
  return a;
}

// Chromosome names in the order a genome lists them: runs of digits compare as numbers, so
// 2H comes before 10H.
bool GenomeOrder(const std::string& a, const std::string& b) {
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    const bool da = std::isdigit(static_cast<unsigned char>(a[i])), db = std::isdigit(static_cast<unsigned char>(b[j]));
    if (da && db) {
      std::size_t ei = i, ej = j;
      while (ei < a.size() && std::isdigit(static_cast<unsigned char>(a[ei]))) ++ei;
      while (ej < b.size() && std::isdigit(static_cast<unsigned char>(b[ej]))) ++ej;
      const std::string na = a.substr(i, ei - i), nb = b.substr(j, ej - j);
      if (na.size() != nb.size() || na != nb) return na.size() != nb.size() ? na.size() < nb.size() : na < nb;
      i = ei;
      j = ej;
    } else {
      if (a[i] != b[j]) return a[i] < b[j];
      ++i;
      ++j;
    }
  }
  return a.size() - i < b.size() - j;
}

}  // namespace

std::vector<PhysicalPanel> PhysicalPanels(const PlotSources& s) {
  std::vector<PhysicalPanel> panels;
  std::map<std::string, std::size_t> panel_of;
  std::vector<std::size_t> series_of(s.group_names.size(), 0);
  for (std::size_t g = 0; g < s.group_chromosomes.size(); ++g) {
    const std::string& c = s.group_chromosomes[g];
    if (c.empty()) continue;
    auto [it, added] = panel_of.emplace(c, panels.size());
    if (added) panels.push_back({c, {}, {}});
    series_of[g] = panels[it->second].groups.size();
    panels[it->second].groups.push_back(s.group_names[g]);
  }
  for (const PlotSources::Locus& l : s.loci) {
    if (!l.position || l.group >= s.group_chromosomes.size()) continue;
    const std::string& c = s.group_chromosomes[l.group];
    if (c.empty() || c != l.chromosome) continue;
    panels[panel_of[c]].dots.push_back({*l.position, l.cm, series_of[l.group]});
  }
  std::erase_if(panels, [](const PhysicalPanel& p) { return p.dots.empty(); });
  std::stable_sort(panels.begin(), panels.end(),
                   [](const PhysicalPanel& x, const PhysicalPanel& y) { return GenomeOrder(x.chromosome, y.chromosome); });
  return panels;
}

Drawing DrawPhysical(const std::string& title, const std::vector<PhysicalPanel>& panels) {
  double most = 0.0;
  for (const PhysicalPanel& p : panels)
    for (const PhysicalDot& d : p.dots) most = std::max(most, std::abs(d.position));
  const double unit = most >= kBasePairs ? 1.0e6 : 1.0;
  const std::string x_label = unit > 1.0 ? "Physical position (Mb)" : "Position in the table of loci";
  const double cell_w = kLeftBand + kPlotW + kRightGap, cell_h = kTopBand + kPlotH + kBottomBand;
  const int columns = std::min<int>(kColumns, std::max<int>(1, static_cast<int>(panels.size())));
  const int rows = (static_cast<int>(panels.size()) + columns - 1) / columns;
  Drawing d;
  d.width = std::max(2 * kMargin + columns * cell_w, 2 * kMargin + CairoBoldTextWidth(title, 14.0));
  d.height = kTitleBand + rows * cell_h + kMargin;
  d.Text(title, kMargin, 26.0, 14.0, TextAnchor::kStart, kInk, true);
  for (std::size_t k = 0; k < panels.size(); ++k) {
    const PhysicalPanel& p = panels[k];
    const double left = kMargin + static_cast<double>(k % columns) * cell_w + kLeftBand;
    const double top = kTitleBand + static_cast<double>(k / columns) * cell_h + kTopBand;
    double x_lo = 1e300, x_hi = -1e300, y_lo = 1e300, y_hi = -1e300;
    for (const PhysicalDot& dot : p.dots) {
      x_lo = std::min(x_lo, dot.position / unit);
      x_hi = std::max(x_hi, dot.position / unit);
      y_lo = std::min(y_lo, dot.cm);
      y_hi = std::max(y_hi, dot.cm);
    }
    const Axis ax = AxisOver(x_lo, x_hi), ay = AxisOver(std::min(0.0, y_lo), y_hi);
    const auto X = [&](double v) { return left + (v - ax.lo) / (ax.hi - ax.lo) * kPlotW; };
    // Map position runs down the page, as on the chart.
    const auto Y = [&](double v) { return top + (v - ay.lo) / (ay.hi - ay.lo) * kPlotH; };
    d.Add(RectShape{left, top, kPlotW, kPlotH, false, {}, 1.0, kFrame});
    for (double v = ax.lo; v <= ax.hi + 1e-9 * ax.step; v += ax.step) {
      d.Line(X(v), top + kPlotH, X(v), top + kPlotH + 4.0, 1.0, kAxis);
      d.Text(FormatNumber(v), X(v), top + kPlotH + 15.0, 9.0, TextAnchor::kMiddle, kAxis);
    }
    for (double v = ay.lo; v <= ay.hi + 1e-9 * ay.step; v += ay.step) {
      d.Line(left - 4.0, Y(v), left, Y(v), 1.0, kAxis);
      d.Text(FormatNumber(v), left - 6.0, Y(v) + 3.0, 9.0, TextAnchor::kEnd, kAxis);
    }
    d.Text(x_label, left + 0.5 * kPlotW, top + kPlotH + 30.0, 9.0, TextAnchor::kMiddle, kAxis);
    d.Add(TextShape{"cM", left - 34.0, top + 0.5 * kPlotH, 9.0, false, TextAnchor::kMiddle, kAxis, true});
    // The heading names the panel's groups, each in the colour of its dots.
    double x = left;
    const std::string chromosome = p.chromosome + (p.groups.size() > 1 || p.groups.front() != p.chromosome ? ":" : "");
    d.Text(chromosome, x, top - 8.0, kFont, TextAnchor::kStart, kInk, true);
    x += CairoBoldTextWidth(chromosome, kFont);
    for (std::size_t g = 0; g < p.groups.size() && chromosome.back() == ':'; ++g) {
      d.Text(p.groups[g], x + 5.0, top - 8.0, kFont, TextAnchor::kStart, kSeries[g % std::size(kSeries)], true);
      x += 5.0 + CairoBoldTextWidth(p.groups[g], kFont);
    }
    for (const PhysicalDot& dot : p.dots)
      d.Add(DotShape{X(dot.position / unit), Y(dot.cm), 2.2, kSeries[dot.series % std::size(kSeries)]});
  }
  return d;
}

}  // namespace gaecli
