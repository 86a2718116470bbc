#pragma once

#include <string>

namespace gae {

// Replaces `path` with `text`. False when the file cannot be written.
bool WriteTextFile(const std::string& path, const std::string& text);

// The stem of every result file: the input path less its last four characters (its
// extension), at most 256 characters.
std::string ResultStem(const std::string& input_path);

}  // namespace gae
