#include "twopoint/pair_file_frame.h"

#include "frame/cpu_clock.h"
#include "frame/messages.h"
#include "frame/message_code.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

bool PairFileFrame(const std::string& lrd_name, int64_t num_markers, int record_length,
                   const std::function<bool()>& write) {
  if (PairStoreIsComplete(lrd_name, num_markers, record_length)) return true;
  MessageCode() = 2801;
  PrintPairwiseMessage(0, 0, 0, 0, 0);
  const float t1 = CpuSeconds();
  const bool written = write();
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
