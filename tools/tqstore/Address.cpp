#include "tools/tqstore/Address.hpp"

#include "tools/tqstore/Console.hpp"

namespace tqstore {

std::optional<Foundation::URL> addressFrom(const std::string& text) {
  auto url = Foundation::URL::withString(text);
  if (url && url->scheme() && url->host()) return url;
  complain("\"" + printable(text) + "\" is not an address; one is http://example.com/file");
  return std::nullopt;
}

}  // namespace tqstore
