#include "platform/Foundation/DateComponentsFormatter.hpp"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>

#include <vector>

#include "platform/Foundation/Locale.hpp"

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
  const icu::MeasureFormat formatter(
      icu::Locale::createCanonical(Locale::current().identifier().c_str()), widthOf(unitsStyle_),
      status);
  icu::UnicodeString text;
  icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
  formatter.formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), text, position,
                           status);
  if (U_FAILURE(status)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace Foundation
