#include "twopoint/pairwise_frame.h"

#include "vocabulary/cpu_clock.h"
#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"
#include "twopoint/pair_store_writer.h"

namespace gae {

bool RunPairwiseFrame(const std::string& lrd_name, const PairwiseFrame& frame) {
  if (PairStoreIsComplete(lrd_name, frame.num_markers, frame.record_length)) return true;

  MessageCode() = 2801;
  PrintPairwiseMessage(0, 0, 0, 0, 0);
  const float t1 = CpuSeconds();

  PairStoreJob job;
  job.lrd_name = lrd_name;
  job.num_markers = frame.num_markers;
  job.record_length = frame.record_length;
  job.threads = frame.threads;
  if (frame.prepare_rows) job.estimate_row = frame.prepare_rows();
  else job.estimate = frame.prepare();
  job.inspect = [&frame](int64_t i, int64_t j, float* record) {
    if (frame.in_order) frame.in_order(i, j, record);
    if (record[1] > kHighFrequency) {
      MessageCode() = 2802;
      PrintPairwiseMessage(static_cast<int>(i), static_cast<int>(j), record[1], -record[0], 0);
    }
  };
  const bool written = WritePairStore(job);

  const float t2 = CpuSeconds();
  MessageCode() = 2803;
  PrintPairwiseMessage(0, 0, 0, 0, (t2 - t1) / 60.0f);
  MessageCode() = 0;
  return written;
}

}  // namespace gae
