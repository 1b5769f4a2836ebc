#include "platform/Foundation/JSONSerialization.hpp"

#include <string>

#include "platform/Foundation/Encoder.hpp"
#include "platform/Foundation/JSONReader.hpp"

namespace Foundation {

namespace {

// --- writing ---

void write(Encoder& encoder, const JSONValue& value);

void writeList(Encoder& encoder, const JSONValue::List& list) {
  encoder.beginList();
  for (const auto& element : list) {
    if (encoder.hasFailed()) return;
    encoder.nextElement();
    write(encoder, element);
  }
  encoder.endList();
}

void writeMap(Encoder& encoder, const JSONValue::Map& map) {
  encoder.beginObject();
  for (const auto& [key, value] : map) {
    if (encoder.hasFailed()) return;
    encoder.key(key);
    write(encoder, value);
  }
  encoder.endObject();
}

// Goes no deeper than the encoder does.
void write(Encoder& encoder, const JSONValue& value) {
  switch (value.tag()) {
    case JSONValue::Case::null:
      return encoder.null();
    case JSONValue::Case::boolean:
      return encoder.boolean(*value.asBoolean());
    case JSONValue::Case::integer:
      return encoder.integer(*value.asInteger());
    case JSONValue::Case::unsignedInteger:
      return encoder.unsignedInteger(*value.asUnsignedInteger());
    case JSONValue::Case::floating:
      return encoder.floating(*value.asFloating());
    case JSONValue::Case::text:
      return encoder.text(*value.asText());
    case JSONValue::Case::list:
      return writeList(encoder, *value.asList());
    case JSONValue::Case::map:
      return writeMap(encoder, *value.asMap());
  }
}

// --- reading: false when it can't go on; the reader knows the problem ---

bool read(JSONReader& reader, JSONValue& value);

bool readList(JSONReader& reader, JSONValue& value) {
  JSONValue::List list;
  if (!reader.enterList()) return false;
  while (reader.nextElement()) {
    if (!read(reader, list.emplace_back())) return false;
  }
  value = std::move(list);
  return true;
}

bool readMap(JSONReader& reader, JSONValue& value) {
  JSONValue::Map map;
  if (!reader.enterObject()) return false;
  while (reader.nextField()) {
    if (!read(reader, map[std::string(reader.key())])) return false;
  }
  value = std::move(map);
  return true;
}

bool readBoolean(JSONReader& reader, JSONValue& value) {
  bool truth = false;
  if (!reader.readBoolean(truth)) return false;
  value = truth;
  return true;
}

bool readNumber(JSONReader& reader, JSONValue& value) {
  JSONNumber number;
  if (!reader.readNumber(number)) return false;
  value = JSONValue(number);
  return true;
}

bool readText(JSONReader& reader, JSONValue& value) {
  std::string text;
  if (!reader.readText(text)) return false;
  value = std::move(text);
  return true;
}

// Goes no deeper than the reader does.
bool read(JSONReader& reader, JSONValue& value) {
  const auto kind = reader.kind();
  if (!kind) return false;
  switch (*kind) {
    case JSONKind::null:
      value = nullptr;
      return reader.readNull();
    case JSONKind::boolean:
      return readBoolean(reader, value);
    case JSONKind::number:
      return readNumber(reader, value);
    case JSONKind::text:
      return readText(reader, value);
    case JSONKind::list:
      return readList(reader, value);
    case JSONKind::object:
      return readMap(reader, value);
  }
  return false;
}

JSONReading failedReading(std::string description) {
  return {.error =
              NSError::withDescription(std::string(NSCocoaErrorDomain),
                                       JSONSerialization::kReadCorrupt, std::move(description))};
}

JSONEncoding failedWriting(std::string description) {
  return {.error =
              NSError::withDescription(std::string(NSCocoaErrorDomain),
                                       JSONSerialization::kWriteInvalid, std::move(description))};
}

bool canBeOutermost(std::optional<JSONKind> kind) {
  return kind == JSONKind::list || kind == JSONKind::object;
}

}  // namespace

JSONEncoding JSONSerialization::data(const JSONValue& object) {
  if (!object.asList() && !object.asMap()) {
    return failedWriting("the outermost value is neither a list nor a map");
  }
  Encoder encoder;
  write(encoder, object);
  if (encoder.hasFailed()) return failedWriting(encoder.failure());
  return {.data = dataFromText(encoder.json())};
}

JSONReading JSONSerialization::jsonObject(std::string_view text) {
  JSONReader reader(text);
  JSONReading result;
  const auto kind = reader.kind();
  if (kind && !canBeOutermost(kind)) {
    return failedReading("the outermost value is neither a list nor a map");
  }
  if (kind && read(reader, result.value.emplace()) && reader.isAtEnd()) return result;
  return failedReading(reader.problem());
}

}  // namespace Foundation
