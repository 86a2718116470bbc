// Words for two refusals whose library message leaves a user guessing: a file that is not an
// input file of the tool at all (an R/qtl csv given to `map`), and a marker refused by number
// with no reason.
#pragma once

#include <string>

namespace gaecli {

// What the file looks like when it is another program's file the command can import, with the
// command that does ("a csv file: gaengine import rqtl FILE --pop TYPE"); empty otherwise.
std::string FileLooksLike(const std::string& file);

// "FILE: marker NAME (number M) cannot be read as an F2: all its calls are missing", with the
// hint; empty when the marker's row cannot be found.
std::string BadMarkerMessage(const std::string& file, int tool_code, int marker);

}  // namespace gaecli
