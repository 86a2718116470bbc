#include "input/map_tool_reader.h"

#include "vocabulary/message_code.h"
#include "input/anchor_section.h"
#include "input/header_fields.h"

namespace gae {

void ReadMapToolInput(InputFile& in, int tool_code, MapToolInput& out) {
  MessageCode() = 0;
  out = MapToolInput{};
  struct Field {
    HeaderField field;
    int32_t* value;
  };
  // The map tools' header has no SpaceUnit: markers are not placed on a map yet.
  const Field fields[] = {{HeaderField::kPopulationType, &out.population_type},
                          {HeaderField::kMappingFunction, &out.mapping_function},
                          {HeaderField::kSpaceType, &out.space_type},
                          {HeaderField::kNumMarkers, &out.num_markers},
                          {HeaderField::kPopulationSize, &out.population_size}};
  for (const Field& f : fields) {
    if (!ReadHeaderField(in, f.field, tool_code, *f.value)) return;
  }
  if (!ReadMarkerSection(in, tool_code, out.population_type, out.num_markers, out.population_size,
                         out.markers))
    return;
  ReadAnchorSection(in, out.markers.names, out.anchors);
}

}  // namespace gae
