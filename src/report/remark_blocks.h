// Remark blocks of the input files that the map tools write for the next tools. Every line
// begins with "!", so a reader passes over it; trailing blanks are part of the text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gae {

const std::vector<std::string_view>& BiparentalGeneralBlock();
const std::vector<std::string_view>& BiparentalMarkerTypeBlock();
const std::vector<std::string_view>& ClonalGeneralBlock();
const std::vector<std::string_view>& ClonalMarkerTypeBlock();
const std::vector<std::string_view>& PureLineGeneralBlock();
const std::vector<std::string_view>& PureLineMarkerTypeBlock();
const std::vector<std::string_view>& AnchorBlock();
const std::vector<std::string_view>& ChromosomeBlock();
const std::vector<std::string_view>& PhenotypeBlock();

// The lines of a block, each ended by a line feed.
std::string BlockText(const std::vector<std::string_view>& block);

}  // namespace gae
