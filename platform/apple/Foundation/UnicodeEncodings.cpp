#include "platform/apple/Foundation/UnicodeEncodings.hpp"

#include <cstddef>

#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/UTF16.hpp"

namespace Foundation {

namespace {

enum class Order { big, little };

// How bytes are read as units of that many bytes.
struct Form {
  std::size_t unitSize = 1;
  Order order = Order::big;
  bool mayHaveMark = false;
};

std::optional<Form> formOf(NSStringEncoding encoding) {
  switch (encoding) {
    case NSUTF8StringEncoding:
      return Form{1, Order::big, true};
    case NSUTF16StringEncoding:
      return Form{2, Order::big, true};
    case NSUTF16BigEndianStringEncoding:
      return Form{2, Order::big};
    case NSUTF16LittleEndianStringEncoding:
      return Form{2, Order::little};
    case NSUTF32StringEncoding:
      return Form{4, Order::big, true};
    case NSUTF32BigEndianStringEncoding:
      return Form{4, Order::big};
    case NSUTF32LittleEndianStringEncoding:
      return Form{4, Order::little};
    default:
      return std::nullopt;
  }
}

char32_t unitAt(std::string_view bytes, std::size_t at, const Form& form) {
  char32_t unit = 0;
  for (std::size_t i = 0; i < form.unitSize; ++i) {
    const std::size_t place = form.order == Order::big ? i : form.unitSize - 1 - i;
    unit = (unit << 8U) | static_cast<unsigned char>(bytes[at + place]);
  }
  return unit;
}

// Takes the mark away and does what it says.
void obeyMark(std::string_view& bytes, Form& form) {
  constexpr char32_t kMark = 0xFEFF;
  for (const auto order : {Order::big, Order::little}) {
    const Form tried{form.unitSize, order};
    if (bytes.size() < form.unitSize || unitAt(bytes, 0, tried) != kMark) continue;
    form.order = order;
    bytes.remove_prefix(form.unitSize);
    return;
  }
}

// The character at `at`, which is moved behind it; absent when there is none.
std::optional<char32_t> takeCharacter(std::string_view bytes, std::size_t& at, const Form& form) {
  const auto unit = unitAt(bytes, at, form);
  at += form.unitSize;
  if (isLowSurrogate(unit) || unit > 0x10FFFF) return std::nullopt;
  if (!isHighSurrogate(unit)) return unit;
  if (form.unitSize != 2 || at == bytes.size()) return std::nullopt;
  const auto low = unitAt(bytes, at, form);
  if (!isLowSurrogate(low)) return std::nullopt;
  at += form.unitSize;
  return 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
}

std::optional<std::string> decodeUTF8(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (!isUTF8(bytes)) return std::nullopt;
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  return std::string(bytes);
}

}  // namespace

bool isUnicodeEncoding(NSStringEncoding encoding) { return formOf(encoding).has_value(); }

std::optional<std::string> decodeUnicode(std::string_view bytes, NSStringEncoding encoding) {
  auto form = formOf(encoding);
  if (!form || bytes.size() % form->unitSize != 0) return std::nullopt;
  if (form->unitSize == 1) return decodeUTF8(bytes);
  if (form->mayHaveMark) obeyMark(bytes, *form);
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const auto character = takeCharacter(bytes, at, *form);
    if (!character) return std::nullopt;
    appendUTF8(text, *character);
  }
  return text;
}

}  // namespace Foundation
