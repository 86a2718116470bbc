#include "twopoint/pair_file_frame.h"

#include "frame/cpu_clock.h"
#include "frame/messages.h"
#include "frame/process_state.h"
#include "frame/run_log.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

bool PairFileFrame(std::string_view tool, const std::string& project_path, int record_length,
                   int mapping_function, int64_t num_markers,
                   const std::function<bool(const std::string& lrd_name)>& write) {
  LogSession log(tool);
  PairStoreSettings& settings = Process().pair_store;
  settings.lrd_name = PairStoreName(project_path);
  settings.record_length = record_length;
  settings.mapping_function = mapping_function;
  if (PairStoreIsComplete(settings.lrd_name, num_markers, record_length)) return true;

  MessageCode() = 2801;
  PrintPairwiseMessage(0, 0, 0, 0, 0);
  const float t1 = CpuSeconds();
  const bool written = write(settings.lrd_name);
  const float t2 = CpuSeconds();
  MessageCode() = 2803;
  PrintPairwiseMessage(0, 0, 0, 0, (t2 - t1) / 60.0f);
  MessageCode() = 0;
  return written;
}

void WarnHighFrequency(int64_t i, int64_t j, float rec_freq, float lod) {
  constexpr float kHighFrequency = 0.9f;
  if (rec_freq > kHighFrequency) {
    MessageCode() = 2802;
    PrintPairwiseMessage(static_cast<int>(i), static_cast<int>(j), rec_freq, lod, 0);
  }
}

}  // namespace gae
