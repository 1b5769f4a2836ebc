#include "platform/Foundation/StringEncoding.hpp"

#include <unicode/ucnv.h>

#include <array>
#include <memory>
#include <string_view>

#include "platform/Foundation/UnicodeText.hpp"

namespace Foundation {

namespace {

struct KnownEncoding {
  NSStringEncoding encoding;
  const char* icuName;
  std::string_view name;
};

// Under the platform's Shift JIS lies the one with Windows' additions, and so it is called.
constexpr std::array kKnownEncodings{
    KnownEncoding{NSASCIIStringEncoding, "US-ASCII", "Western (ASCII)"},
    KnownEncoding{NSJapaneseEUCStringEncoding, "EUC-JP", "Japanese (EUC)"},
    KnownEncoding{NSUTF8StringEncoding, "UTF-8", "Unicode (UTF-8)"},
    KnownEncoding{NSISOLatin1StringEncoding, "ISO-8859-1", "Western (ISO Latin 1)"},
    KnownEncoding{NSShiftJISStringEncoding, "windows-31j", "Japanese (Windows, DOS)"},
    KnownEncoding{NSISOLatin2StringEncoding, "ISO-8859-2", "Central European (ISO Latin 2)"},
    KnownEncoding{NSUTF16StringEncoding, "UTF-16", "Unicode (UTF-16)"},
    KnownEncoding{NSWindowsCP1251StringEncoding, "windows-1251", "Cyrillic (Windows)"},
    KnownEncoding{NSWindowsCP1252StringEncoding, "windows-1252", "Western (Windows Latin 1)"},
    KnownEncoding{NSWindowsCP1253StringEncoding, "windows-1253", "Greek (Windows)"},
    KnownEncoding{NSWindowsCP1254StringEncoding, "windows-1254", "Turkish (Windows Latin 5)"},
    KnownEncoding{NSWindowsCP1250StringEncoding, "windows-1250",
                  "Central European (Windows Latin 2)"},
    KnownEncoding{NSISO2022JPStringEncoding, "ISO-2022-JP", "Japanese (ISO 2022-JP)"},
    KnownEncoding{NSMacOSRomanStringEncoding, "macintosh", "Western (Mac OS Roman)"},
    KnownEncoding{NSUTF16BigEndianStringEncoding, "UTF-16BE", "Unicode (UTF-16BE)"},
    KnownEncoding{NSUTF16LittleEndianStringEncoding, "UTF-16LE", "Unicode (UTF-16LE)"},
    KnownEncoding{NSUTF32StringEncoding, "UTF-32", "Unicode (UTF-32)"},
    KnownEncoding{NSUTF32BigEndianStringEncoding, "UTF-32BE", "Unicode (UTF-32BE)"},
    KnownEncoding{NSUTF32LittleEndianStringEncoding, "UTF-32LE", "Unicode (UTF-32LE)"},
};

const KnownEncoding* find(NSStringEncoding encoding) {
  for (const auto& known : kKnownEncodings) {
    if (known.encoding == encoding) return &known;
  }
  return nullptr;
}

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

// Stops at what it can't convert, either way, where ICU would put something else. Null if ICU's
// data lacks the encoding.
Converter openConverter(const char* icuName) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(icuName, &status));
  if (!converter) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

std::optional<std::string> converted(std::string_view bytes, UConverter& from, UConverter& to) {
  std::string text;
  std::array<UChar, 4096> pivot{};
  std::array<char, 16384> buffer{};
  auto* pivotSource = pivot.data();
  auto* pivotTarget = pivot.data();
  const char* source = bytes.data();
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  for (bool isFirst = true; status == U_BUFFER_OVERFLOW_ERROR; isFirst = false) {
    status = U_ZERO_ERROR;
    auto* target = buffer.data();
    ucnv_convertEx(&to, &from, &target, buffer.data() + buffer.size(), &source,
                   bytes.data() + bytes.size(), pivot.data(), &pivotSource, &pivotTarget,
                   pivot.data() + pivot.size(), static_cast<UBool>(isFirst), true, &status);
    text.append(buffer.data(), target);
  }
  return U_SUCCESS(status) ? std::optional<std::string>(std::move(text)) : std::nullopt;
}

std::optional<std::string> decodeUTF8(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (!isUTF8(bytes)) return std::nullopt;
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  return std::string(bytes);
}

}  // namespace

std::string localizedName(NSStringEncoding encoding) {
  const auto* const known = find(encoding);
  return known ? std::string(known->name) : std::to_string(encoding);
}

std::optional<std::string> decodeText(const Data& bytes, NSStringEncoding encoding) {
  const auto* const known = find(encoding);
  if (known == nullptr) return std::nullopt;
  const auto text = textInData(bytes);
  if (encoding == NSUTF8StringEncoding) return decodeUTF8(text);
  if (text.empty()) return std::string();
  const auto from = openConverter(known->icuName);
  const auto to = openConverter("UTF-8");
  return from && to ? converted(text, *from, *to) : std::nullopt;
}

}  // namespace Foundation
