// The JSON body of an answer becomes values: of a type, beside simdjson and nlohmann/json by hand;
// of no type, beside nlohmann/json's own tree.

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/Foundation/JSONSerialization.hpp"

namespace {

using Foundation::Data;

struct Score {
  std::int64_t id = 0;
  std::string player;
  double points = 0;
  bool isVerified = false;
  std::vector<std::string> badges;
  std::optional<std::string> guild;
};
template <class Coder>
void codableFields(Coder& coder, Score& score) {
  coder("id", score.id)("player", score.player)("points", score.points)(
      "isVerified", score.isVerified)("badges", score.badges)("guild", score.guild);
}
void from_json(const nlohmann::json& json, Score& score) {
  json.at("id").get_to(score.id);
  json.at("player").get_to(score.player);
  json.at("points").get_to(score.points);
  json.at("isVerified").get_to(score.isVerified);
  json.at("badges").get_to(score.badges);
  if (json.contains("guild")) score.guild = json.at("guild").get<std::string>();
}

Score makeScore(std::int64_t number) {
  Score score{number * 7919,
              "Player \"" + std::to_string(number) + "\" of the Northern Lands",
              static_cast<double>(number) * 1.37,
              number % 3 == 0,
              {"first steps", "night owl"},
              std::nullopt};
  if (number % 2 == 0) score.guild = "The Lanterns of Århus";
  return score;
}

Data makeBody(std::size_t size) {
  std::string text = "[";
  for (std::int64_t number = 0; text.size() < size; ++number) {
    if (number > 0) text += ',';
    text += Foundation::textInData(*Foundation::JSONEncoder().encode(makeScore(number)).data);
  }
  return Foundation::dataFromText(text + "]");
}

// A high-score list of that many bytes, or one score more.
const Data& body(std::size_t size) {
  static auto& bodies = *new std::map<std::size_t, Data>;
  auto& made = bodies[size];
  if (made.empty()) made = makeBody(size);
  return made;
}

const Data& body(const benchmark::State& state) {
  return body(static_cast<std::size_t>(state.range(0)));
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(body(state).size()) * state.iterations());
}

void decodeOurs(benchmark::State& state) {
  const auto& bytes = body(state);
  for (auto _ : state) {
    auto scores = Foundation::JSONDecoder().decode<std::vector<Score>>(bytes);
    if (!scores.value) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(scores);
  }
  countBytes(state);
}

Score scoreFrom(simdjson::ondemand::object object) {
  Score score;
  for (auto field : object) {
    const std::string_view key = field.unescaped_key();
    if (key == "id") {
      score.id = field.value().get_int64();
    } else if (key == "player") {
      score.player = std::string_view(field.value());
    } else if (key == "points") {
      score.points = field.value().get_double();
    } else if (key == "isVerified") {
      score.isVerified = field.value().get_bool();
    } else if (key == "badges") {
      for (auto badge : field.value().get_array()) {
        score.badges.emplace_back(std::string_view(badge));
      }
    } else if (key == "guild") {
      score.guild = std::string(std::string_view(field.value()));
    }
  }
  return score;
}

// As its manual advises: one parser for all texts.
void decodeSimdjson(benchmark::State& state) {
  const auto text = Foundation::textInData(body(state));
  simdjson::ondemand::parser parser;
  for (auto _ : state) {
    const simdjson::padded_string padded(text);
    auto document = parser.iterate(padded);
    std::vector<Score> scores;
    for (auto element : document.get_array()) scores.push_back(scoreFrom(element.get_object()));
    benchmark::DoNotOptimize(scores.data());
  }
  countBytes(state);
}

void decodeNlohmann(benchmark::State& state) {
  const auto text = Foundation::textInData(body(state));
  for (auto _ : state) {
    auto scores = nlohmann::json::parse(text).get<std::vector<Score>>();
    benchmark::DoNotOptimize(scores.data());
  }
  countBytes(state);
}

void valueOurs(benchmark::State& state) {
  const auto& bytes = body(state);
  for (auto _ : state) {
    auto value = Foundation::JSONSerialization::jsonObject(bytes);
    if (!value.value) state.SkipWithError("not read");
    benchmark::DoNotOptimize(value);
  }
  countBytes(state);
}

void valueNlohmann(benchmark::State& state) {
  const auto text = Foundation::textInData(body(state));
  for (auto _ : state) {
    auto value = nlohmann::json::parse(text);
    benchmark::DoNotOptimize(value.size());
  }
  countBytes(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(std::int64_t{1} << 20U)->Arg(std::int64_t{10} << 20U);
}

BENCHMARK(decodeOurs)->Name("decode a body, beside simdjson/ours")->Apply(sizes);
BENCHMARK(decodeSimdjson)->Name("decode a body, beside simdjson/bare")->Apply(sizes);
BENCHMARK(decodeOurs)->Name("decode a body, beside nlohmann/ours")->Apply(sizes);
BENCHMARK(decodeNlohmann)->Name("decode a body, beside nlohmann/bare")->Apply(sizes);
BENCHMARK(valueOurs)->Name("JSON value of a body, beside nlohmann/ours")->Apply(sizes);
BENCHMARK(valueNlohmann)->Name("JSON value of a body, beside nlohmann/bare")->Apply(sizes);

}  // namespace
