#include "errorscan/err_report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gae {
namespace {

TEST(ErrReport, ListsErrorsByIndividualAndByMarker) {
  // Three individuals, two markers (input numbers 5 and 9). Individual 3's X at marker 1 was
  // missing in the input, so it is no error although the corrected cell is X.
  const std::vector<std::string> names{"M1", "Marker_two"};
  const std::vector<int32_t> numbers{5, 9};
  const std::string text = ErrReportText(3, names, numbers, "AHX" "BBA", "XHX" "BXX");
  const std::string gap(26, ' ');
  const std::string expected =
      "!Potential genotyping errors per individual\n"
      "   IndivID  Errors    MkID  MkType    MkID  MkType\n"
      "         1       1       5       A\n"
      "         2       1       9       B\n"
      "         3       1       9       A\n"
      "TotalError       3\n"
      "ErrorRate   0.5000\n"
      "\n"
      "!Potential genotyping errors per marker\n"
      "MarkerName" + gap + "    MkID  Errors IndivID  MkType IndivID  MkType\n"
      // A35 name, one blank, then I8 fields: the number's last digit is in column 44.
      "M1" + std::string(41, ' ') + "5       1       1       A\n"
      "Marker_two" + std::string(33, ' ') + "9       2       2       B       3       A\n"
      "TotalError" + gap + "       3\n"
      "ErrorRate " + gap + "  0.5000\n";
  EXPECT_EQ(text, expected);
}

TEST(ErrReport, NoErrorGivesBothHeadersAndAZeroRate) {
  const std::vector<std::string> names{"M1"};
  const std::vector<int32_t> numbers{1};
  const std::string text = ErrReportText(2, names, numbers, "AX", "AX");
  EXPECT_NE(text.find("TotalError       0\nErrorRate   0.0000\n\n!Potential genotyping errors per marker\n"),
            std::string::npos);
  const std::string last = "ErrorRate " + std::string(26, ' ') + "  0.0000\n";
  EXPECT_EQ(text.substr(text.size() - last.size()), last);
  // No linked marker at all: the rate is 0, not 0/0.
  EXPECT_NE(ErrReportText(2, {}, {}, "", "").find("ErrorRate   0.0000"), std::string::npos);
}

}  // namespace
}  // namespace gae
