// Map against genome: for each chromosome, every marker's map position (cM) against its
// position in the table of loci (base pairs for sequence data), the standard check of a map
// against a reference. A good group climbs steadily; a block out of order or a marker far from
// its neighbours stands out at a glance.
#pragma once

#include <string>
#include <vector>

#include "plot_drawing.h"
#include "plot_sources.h"

namespace gaecli {

struct PhysicalDot {
  double position = 0.0;  // as the table has it
  double cm = 0.0;
  std::size_t series = 0;  // which of the panel's groups
};

struct PhysicalPanel {
  std::string chromosome;
  std::vector<std::string> groups;  // the groups named after this chromosome
  std::vector<PhysicalDot> dots;
};

// One panel per chromosome that names a group, in the genome's order (numbers in names compare
// as numbers), holding the markers of those
// groups that the table puts on that chromosome with a position. Empty when there is no table
// or it gives no positions.
std::vector<PhysicalPanel> PhysicalPanels(const PlotSources& sources);

Drawing DrawPhysical(const std::string& title, const std::vector<PhysicalPanel>& panels);

}  // namespace gaecli
