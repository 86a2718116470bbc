// The command never replaces a file that it did not write. Beside the results of an input it
// keeps a short list of the files its runs wrote, each with its size and modification time; a
// result name taken by any other file (a user's own .cdq beside the .cdm, a link, a pipe, a
// file edited since) stops the run before anything is written, unless --overwrite.
#pragma once

#include <string>
#include <vector>

namespace gaecli {

class ResultManifest {
 public:
  // The results of `input`: its stem plus each suffix.
  ResultManifest(const std::string& input, std::vector<std::string> suffixes);
  // Where the list is kept: the stem plus ".written".
  std::string FileName() const { return stem_ + ".written"; }
  // The result names taken by files this command did not write (or that changed since).
  std::vector<std::string> Foreign() const;
  // False, with the names and the way out on standard error, when a foreign file is in the
  // way and `overwrite` is false.
  bool Admit(bool overwrite) const;
  // Lists the results as they now stand. False when the list cannot be written.
  bool Record() const;

 private:
  std::string input_, stem_;
  std::vector<std::string> suffixes_;
};

}  // namespace gaecli
