// Errors in the user's words. The library says what went wrong in its catalogue's terms
// ("Invalid MarkerType! MarkerID=1 LineID=2 Input MarkerType=Q") on standard output; the
// command turns the line into the file's terms (line, marker name, individual, the codes the
// population takes) on standard error, with a hint where a common slip explains it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace gaecli {

// Puts the InputNameProblem check on the input file of every sub-command that names results
// after it.
void AddInputNameChecks(CLI::App& app);

// Why a path cannot be an input file: every result file is named by the path less its last
// four characters, so those must be a dot and a three-letter extension, with a name before
// them. Empty when the path is fine.
std::string InputNameProblem(const std::string& path);

// Why the results of `file` (beside it) and the run logs (in the working folder) cannot be
// written, or empty.
std::string FolderProblem(const std::string& file);

// Prints on standard error why the tool (its stage ToolCode: 104 MAP, 20 CDM, 30 PLM) refused
// `file` with `status`, from the last error line the library printed.
void ExplainRefusal(const std::string& file, int tool_code, int status);

// The values of a catalogue line of `code` as printed, in the order the text names them;
// empty when the line does not have the catalogue's shape.
std::vector<std::string> CatalogueValues(int code, const std::string& line);

}  // namespace gaecli
