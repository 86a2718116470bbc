#include "vcf_import/import_files.h"

#include <cstdio>
#include <fstream>

#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "vocabulary/frame_codes.h"
#include "vocabulary/message_code.h"

namespace gae {

namespace {

bool WriteText(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << text;
  out.close();
  return !out.fail();
}

}  // namespace

PlacedImport PlaceImportedFiles(const std::string& output_path, int reader_tool_code, const MapInputRecord& record,
                                const LocusTable& loci) {
  PlacedImport placed;
  const std::string loci_path = LocusTablePath(output_path);
  const std::string input_part = output_path + ".part", loci_part = loci_path + ".part";
  auto discard = [&] {
    std::remove(input_part.c_str());
    std::remove(loci_part.c_str());
  };
  if (!WriteText(input_part, MapInputText(record))) {
    discard();
    placed.error = output_path + ": cannot be written";
    return placed;
  }
  if (!WriteText(loci_part, LocusTableText(loci))) {
    discard();
    placed.error = loci_path + ": cannot be written";
    return placed;
  }
  {
    const int saved = MessageCode();
    MessageCode() = 0;
    InputFile written;
    MapToolInput input;
    if (!written.Open(input_part)) MessageCode() = kMissingFile;
    else ReadMapToolInput(written, reader_tool_code, input);
    placed.reader_code = MessageCode();
    MessageCode() = saved;
  }
  if (placed.reader_code != 0) {
    discard();
    return placed;
  }
  if (std::rename(input_part.c_str(), output_path.c_str()) != 0 ||
      std::rename(loci_part.c_str(), loci_path.c_str()) != 0) {
    discard();
    std::remove(output_path.c_str());
    placed.error = output_path + ": cannot be put in place";
  }
  return placed;
}

}  // namespace gae
