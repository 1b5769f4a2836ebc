#include "platform/embedded/Foundation/DefaultsRow.hpp"

#include <limits>

#include "platform/Foundation/UnicodeText.hpp"
#include "platform/embedded/Foundation/DefaultsJSON.hpp"

namespace Foundation {

namespace {

using Case = DefaultsObject::Case;
using Object = std::optional<DefaultsObject>;

// A row's value, as the type that SQLite says it has.
struct Value {
  const detail::SqliteStatement& row;
  int column;

  [[nodiscard]] bool isA(std::string_view type) const { return row.text(column + 1) == type; }
};

Object readData(const Value& value) {
  if (!value.isA("blob")) return std::nullopt;
  return DefaultsObject::data(dataFromText(value.row.text(value.column)));
}

Object readText(const Value& value) {
  if (!value.isA("text")) return std::nullopt;
  return DefaultsObject::text(value.row.text(value.column));
}

std::optional<std::int64_t> readInteger(const Value& value) {
  if (!value.isA("integer")) return std::nullopt;
  return value.row.integer(value.column);
}

// SQLite keeps what is not a number as null.
std::optional<double> readDouble(const Value& value) {
  if (value.isA("null")) return std::numeric_limits<double>::quiet_NaN();
  if (!value.isA("real")) return std::nullopt;
  return value.row.real(value.column);
}

Object readNested(const Value& value, Case kind) {
  if (!value.isA("text")) return std::nullopt;
  auto object = objectFromJSON(value.row.text(value.column));
  if (!object || object->tag() != kind) return std::nullopt;
  return object;
}

// The value made by `make` of what was read, if anything was.
template <class Plain, class Make>
Object made(const std::optional<Plain>& value, Make make) {
  if (!value) return std::nullopt;
  return make(*value);
}

}  // namespace

std::string storageProblem(const DefaultsObject& object) {
  switch (object.tag()) {
    case Case::data:
    case Case::integer:
    case Case::floating:
    case Case::boolean:
    case Case::date:
      return "";
    case Case::text:
      return isUTF8(*object.asText()) ? "" : "the text is not UTF-8";
    case Case::list:
    case Case::map:
      break;
  }
  const auto encoding = jsonFromObject(object);
  return encoding.error ? encoding.error->localizedDescription() : "";
}

void bindObject(detail::SqliteStatement& statement, const DefaultsObject& object) {
  statement.bind(nameOf(object.tag()));
  switch (object.tag()) {
    case Case::data:
      statement.bindBytes(object.asData()->data(), object.asData()->size());
      break;
    case Case::text:
      statement.bind(*object.asText());
      break;
    case Case::integer:
      statement.bind(*object.asInteger());
      break;
    case Case::floating:
      statement.bind(*object.asFloating());
      break;
    case Case::boolean:
      statement.bind(std::int64_t{*object.asBoolean()});
      break;
    case Case::date:
      statement.bind(object.asDate()->timeIntervalSince1970());
      break;
    case Case::list:
    case Case::map:
      statement.bind(textInData(jsonFromObject(object).data.value_or(Data())));
      break;
  }
}

std::optional<DefaultsObject> readObject(const detail::SqliteStatement& row, int column) {
  const auto kind = caseOf(row.text(column));
  const Value value{row, column + 1};
  if (!kind) return std::nullopt;
  switch (*kind) {
    case Case::data:
      return readData(value);
    case Case::text:
      return readText(value);
    case Case::integer:
      return made(readInteger(value), DefaultsObject::integer);
    case Case::floating:
      return made(readDouble(value), DefaultsObject::floating);
    case Case::boolean:
      return made(readInteger(value), DefaultsObject::boolean);
    case Case::date:
      return made(readDouble(value),
                  [](double seconds) { return DefaultsObject::date(Date::sinceEpoch(seconds)); });
    case Case::list:
    case Case::map:
      return readNested(value, *kind);
  }
  return std::nullopt;
}

}  // namespace Foundation
