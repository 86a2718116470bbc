#include "vcf_import/import_design.h"

#include <cctype>

#include "input/tool_codes.h"
#include "vocabulary/population.h"

namespace gae {

namespace {

int ToolOfExtension(std::string_view path) {
  if (path.size() < 4) return 0;
  std::string extension(path.substr(path.size() - 4));
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (extension == ".map") return 2;
  if (extension == ".cdm") return kClonalToolCode;
  if (extension == ".plm") return kPureLineToolCode;
  return 0;
}

int32_t DesignCode(const ImportDesign& d) {
  if (d.tool_code == kClonalToolCode) return kClonalDesign;
  if (d.tool_code == kPureLineToolCode) return d.parents == 8 ? kEightWayDesign : kFourWayDesign;
  return kBiparentalDesign;
}

std::optional<ImportDesign> Biparental(std::string_view population, int parents, std::string& why) {
  if (parents != 2) {
    why = "a MAP file is written from two inbred parents (--parents P1,P2), not " + std::to_string(parents);
    return std::nullopt;
  }
  const int type = PopulationTypeNamed(kBiparentalDesign, population);
  if (type == 0) {
    why = population.empty() ? "a MAP file needs --pop: the population type, 1 to 20 or a name such as F2 or RIL"
                             : "--pop: '" + std::string(population) +
                                   "' is no bi-parental population type (1 to 20, or a name such as F2 or RIL)";
    return std::nullopt;
  }
  return ImportDesign{2, type, 2};
}

std::optional<ImportDesign> Clonal(std::string_view population, int parents, std::string& why) {
  if (parents != 2 && parents != 4) {
    why = "a CDM file is written from the two parents of a clonal F1 or the four grandparents of a double cross, not " +
          std::to_string(parents) + " parents";
    return std::nullopt;
  }
  const int implied = parents == 2 ? 1 : 2;
  if (!population.empty() && PopulationTypeNamed(kClonalDesign, population) != implied) {
    why = "--pop: with " + std::to_string(parents) + " parents the population is " +
          std::string(PopulationName(kClonalDesign, implied)) + " (" + std::to_string(implied) + "), not '" +
          std::string(population) + "'";
    return std::nullopt;
  }
  return ImportDesign{kClonalToolCode, implied, parents};
}

std::optional<ImportDesign> PureLines(std::string_view population, int parents, std::string& why) {
  if (parents != 4 && parents != 8) {
    why = "a PLM file is written from four or eight founders, not " + std::to_string(parents);
    return std::nullopt;
  }
  // "DH" and "RIL" alone are enough: the founders give the 4 or the 8.
  std::string named(population);
  for (char& c : named) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  if (named == "DH" || named == "RIL") named = std::to_string(parents) + "P" + named;
  const int type = PopulationTypeNamed(kFourWayDesign, named);
  if (type == 0 || PureLineFounders(type) != parents) {
    const std::string four = parents == 4 ? "4PDH (1) or 4PRIL (2)" : "8PDH (3) or 8PRIL (4)";
    why = population.empty() ? "a PLM file needs --pop: " + four
                             : "--pop: with " + std::to_string(parents) + " founders the population is " + four +
                                   ", not '" + std::string(population) + "'";
    return std::nullopt;
  }
  return ImportDesign{kPureLineToolCode, type, parents};
}

}  // namespace

std::optional<ImportDesign> ChooseImportDesign(std::string_view output_path, std::string_view population,
                                               int parents, std::string& why) {
  switch (ToolOfExtension(output_path)) {
    case 2: return Biparental(population, parents, why);
    case kClonalToolCode: return Clonal(population, parents, why);
    case kPureLineToolCode: return PureLines(population, parents, why);
    default:
      why = "the output file must end in .map, .cdm or .plm: the extension chooses the map tool";
      return std::nullopt;
  }
}

int ReaderToolCode(const ImportDesign& design) {
  return design.tool_code == 2 ? kMapToolCode : design.tool_code;
}

std::string DesignText(const ImportDesign& design) {
  const char* tool = design.tool_code == kClonalToolCode ? "CDM" : design.tool_code == kPureLineToolCode ? "PLM" : "MAP";
  return std::string(PopulationName(DesignCode(design), design.population_type)) + " (" + tool + " type " +
         std::to_string(design.population_type) + ")";
}

}  // namespace gae
