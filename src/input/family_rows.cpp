#include "input/family_rows.h"

#include "vocabulary/messages.h"
#include "vocabulary/message_code.h"

namespace gae {

bool ReadFamilyRows(InputFile& in, int32_t num_families, std::vector<Family>& families,
                    int32_t& population_size) {
  MessageCode() = 0;
  families.clear();
  population_size = 0;
  int64_t total = 0;
  in.SkipRemarks();
  for (int32_t f = 1; f <= num_families; ++f) {
    Family family;
    {
      ListRead read(in);
      if (!read.Text(family.name, 19) || !read.Int(family.size)) {
        MessageCode() = 3506;
        PrintMessage(3506, {f});
        return false;
      }
    }
    total += family.size;
    if (family.size < 1 || total > 2147483647) {
      MessageCode() = 3517;
      PrintMessage(3517, {f, family.size});
      return false;
    }
    families.push_back(std::move(family));
  }
  population_size = static_cast<int32_t>(total);
  return true;
}

}  // namespace gae
