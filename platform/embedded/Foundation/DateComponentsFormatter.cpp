#include "platform/Foundation/DateComponentsFormatter.hpp"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/numberformatter.h>

#include <vector>

#include "platform/Foundation/Locale.hpp"
#include "platform/embedded/Foundation/KnownLocale.hpp"

namespace Foundation {

namespace {

using UnitsStyle = DateComponentsFormatter::UnitsStyle;

UMeasureFormatWidth widthOf(UnitsStyle style) {
  switch (style) {
    case UnitsStyle::abbreviated:
      return UMEASFMT_WIDTH_NARROW;
    case UnitsStyle::shortened:
      return UMEASFMT_WIDTH_SHORT;
    case UnitsStyle::full:
      return UMEASFMT_WIDTH_WIDE;
  }
  return UMEASFMT_WIDTH_WIDE;
}

using MakeUnit = icu::MeasureUnit* (*)(UErrorCode&);

void append(std::vector<icu::Measure>& measures, const std::optional<std::int64_t>& count,
            MakeUnit makeUnit, UErrorCode& status) {
  if (count) measures.emplace_back(icu::Formattable(*count), makeUnit(status), status);
}

UNumberUnitWidth numberWidthOf(UMeasureFormatWidth width) {
  if (width == UMEASFMT_WIDTH_NARROW) return UNUM_UNIT_WIDTH_NARROW;
  return width == UMEASFMT_WIDTH_SHORT ? UNUM_UNIT_WIDTH_SHORT : UNUM_UNIT_WIDTH_FULL_NAME;
}

// Every digit of the count: a measure format would take it through binary floating point.
icu::UnicodeString textOf(const icu::Measure& measure, const icu::Locale& locale,
                          UMeasureFormatWidth width, UErrorCode& status) {
  return icu::number::NumberFormatter::withLocale(locale)
      .unit(measure.getUnit())
      .unitWidth(numberWidthOf(width))
      .formatInt(measure.getNumber().getInt64(status), status)
      .toString(status);
}

}  // namespace

std::optional<std::string> DateComponentsFormatter::stringFromDateComponents(
    const DateComponents& components) const {
  UErrorCode status = U_ZERO_ERROR;
  std::vector<icu::Measure> measures;
  append(measures, components.year, icu::MeasureUnit::createYear, status);
  append(measures, components.month, icu::MeasureUnit::createMonth, status);
  append(measures, components.weekOfMonth, icu::MeasureUnit::createWeek, status);
  append(measures, components.day, icu::MeasureUnit::createDay, status);
  if (measures.empty()) return std::nullopt;
  const auto locale = knownLocale(Locale::current());
  const auto width = widthOf(unitsStyle_);
  icu::UnicodeString text;
  if (measures.size() == 1) {
    text = textOf(measures.front(), locale, width, status);
  } else {
    icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
    icu::MeasureFormat(locale, width, status)
        .formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), text, position,
                        status);
  }
  if (U_FAILURE(status)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace Foundation
