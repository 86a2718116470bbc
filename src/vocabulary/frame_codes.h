// The message codes of the library frame: what an entry says about itself and its stages.
#pragma once

namespace gae {

enum FrameCode : int {
  kMissingFile = 1002,     // "<path> does not exist, and the program stops!"
  kEntryFailed = 1101,     // "error found in DLL! DLL name=..."
  kEntrySucceeded = 1102,  // "<name> run successfully!"
  kCpuTime = 1103,         // the CPU time a step took
  kGroupingRunning = 1104,
  kGroupingByWhatConsensus = 1105,
  kGroupingByWhat = 1106,
  kGroupingMethod = 1107,
  kGroupingDone = 1108,
  kOrderingRunning = 1109,
  kOrderingMethodConsensus = 1110,
  kOrderingByWhatConsensus = 1111,
  kOrderingMethod = 1112,
  kOrderingByWhat = 1113,
  kRipplingRunning = 1114,
  kRipplingByWhatConsensus = 1115,
  kRipplingByWhat = 1116,
  kRipplingWindow = 1117,
};

}  // namespace gae
