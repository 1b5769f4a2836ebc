#include "platform/embedded/Foundation/DefaultsJSON.hpp"

#include <array>
#include <cmath>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/Foundation/NumberText.hpp"

namespace Foundation {

namespace {

using Case = DefaultsObject::Case;

// In the order of the cases.
constexpr std::array<std::string_view, 8> kNames = {"data",    "text", "integer", "floating",
                                                    "boolean", "date", "list",    "map"};

// JSON has no numbers that are not finite: these are texts.
void encodeNumber(Encoder& encoder, double number) {
  if (std::isfinite(number)) {
    encoder.floating(number);
  } else {
    encoder.text(textFromDouble(number));
  }
}

double decodeNumber(Decoder& decoder) {
  double number = 0;
  std::string text;
  if (decoder.kind() != JSONKind::text) {
    decoder.value(number);
    return number;
  }
  decoder.text(text);
  const auto value = doubleFromText(text);
  if (!value) decoder.fail("is no number");
  return value.value_or(0);
}

template <class T>
T decoded(Decoder& decoder) {
  T value{};
  decoder.value(value);
  return value;
}

}  // namespace

std::string_view nameOf(DefaultsObject::Case kind) {
  return kNames.at(static_cast<std::size_t>(kind));
}

std::optional<DefaultsObject::Case> caseOf(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (kNames.at(i) == name) return static_cast<Case>(i);
  }
  return std::nullopt;
}

template <>
struct Codable<DefaultsObject> {
  static void encode(Encoder& encoder, const DefaultsObject& object) {
    encoder.beginObject();
    encoder.key(nameOf(object.tag()));
    if (const auto* const number = object.asFloating()) {
      encodeNumber(encoder, *number);
    } else if (const auto* const date = object.asDate()) {
      encodeNumber(encoder, date->timeIntervalSince1970());
    } else {
      object.match([&](const auto& value) { encoder.value(value); });
    }
    encoder.endObject();
  }

  static DefaultsObject decodeCase(Decoder& decoder, Case kind) {
    switch (kind) {
      case Case::data:
        return DefaultsObject::data(decoded<Data>(decoder));
      case Case::text:
        return DefaultsObject::text(decoded<std::string>(decoder));
      case Case::integer:
        return DefaultsObject::integer(decoded<std::int64_t>(decoder));
      case Case::floating:
        return DefaultsObject::floating(decodeNumber(decoder));
      case Case::boolean:
        return DefaultsObject::boolean(decoded<bool>(decoder));
      case Case::date:
        return DefaultsObject::date(Date::sinceEpoch(decodeNumber(decoder)));
      case Case::list:
        return DefaultsObject::list(decodeList(decoder));
      case Case::map:
        return DefaultsObject::map(decodeMap(decoder));
    }
    return DefaultsObject::boolean(false);
  }

  static DefaultsObject decode(Decoder& decoder) {
    auto object = DefaultsObject::boolean(false);
    int count = 0;
    for (decoder.beginObject(); decoder.nextField(); ++count) {
      const auto kind = caseOf(decoder.key());
      if (!kind) decoder.fail("is no kind of value");
      object = decodeCase(decoder, kind.value_or(Case::boolean));
    }
    if (count != 1) decoder.fail("expected one kind of value");
    return object;
  }

  static DefaultsObject::List decodeList(Decoder& decoder) {
    DefaultsObject::List list;
    for (decoder.beginList(); decoder.nextElement();) list.push_back(decode(decoder));
    return list;
  }

  static DefaultsObject::Map decodeMap(Decoder& decoder) {
    DefaultsObject::Map map;
    for (decoder.beginObject(); decoder.nextField();) {
      const std::string key(decoder.key());
      map.insert_or_assign(key, decode(decoder));
    }
    return map;
  }
};

JSONEncoding jsonFromObject(const DefaultsObject& object) {
  return detail::encodeGuarded(&object, [](Encoder& encoder, const void* erased) {
    Codable<DefaultsObject>::encode(encoder, *static_cast<const DefaultsObject*>(erased));
  });
}

std::optional<DefaultsObject> objectFromJSON(std::string_view json) {
  auto object = DefaultsObject::boolean(false);
  const auto error = detail::decodeGuarded(json, &object, [](Decoder& decoder, void* erased) {
    *static_cast<DefaultsObject*>(erased) = Codable<DefaultsObject>::decode(decoder);
  });
  if (error) return std::nullopt;
  return object;
}

}  // namespace Foundation
