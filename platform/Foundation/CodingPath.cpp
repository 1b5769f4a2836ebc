#include "platform/Foundation/CodingPath.hpp"

namespace Foundation {

std::string CodingPath::description() const {
  std::string text;
  for (const auto& step : steps_) {
    if (step.count == 0) break;
    if (step.isList) {
      text += "[" + std::to_string(step.count - 1) + "]";
    } else {
      if (!text.empty()) text += '.';
      text += step.key;
    }
  }
  return text;
}

}  // namespace Foundation
