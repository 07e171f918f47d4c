// SPDX-License-Identifier: MIT
//
// The snapshot reader. Allowed outcomes: a value that has just the JSON library's own reading of the text, or an error
// with a reason; never a value for a text that the JSON library refuses.

#include <cstdint>
#include <nlohmann/json.hpp>

#include "library/Snapshot.h"
#include "tests/fuzz/Check.h"

namespace {

using nlohmann::ordered_json;

ordered_json toJSON(const snapshot::Value& value) {
  if (const auto* array = value.array()) {
    auto json = ordered_json::array();
    for (const auto& element : *array) json.push_back(toJSON(element));
    return json;
  }
  if (const auto* object = value.object()) {
    auto json = ordered_json::object();
    for (const auto& [key, member] : *object) json[key] = toJSON(member);
    return json;
  }
  if (const auto* text = value.string()) return *text;
  if (const auto* number = std::get_if<std::int64_t>(&value.value)) return *number;
  if (const auto* number = std::get_if<std::uint64_t>(&value.value)) return *number;
  if (const auto* number = std::get_if<double>(&value.value)) return *number;
  return *std::get_if<bool>(&value.value);
}

ordered_json withoutNulls(const ordered_json& json) {
  if (!json.is_structured()) return json;
  auto kept = json.is_array() ? ordered_json::array() : ordered_json::object();
  for (const auto& [key, member] : json.items()) {
    if (member.is_null()) continue;
    json.is_array() ? kept.push_back(withoutNulls(member)) : void(kept[key] = withoutNulls(member));
  }
  return kept;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (size > 4096) return 0;
  const auto expected = ordered_json::parse(text, nullptr, false);
  try {
    const auto value = snapshot::parseJSON(text);
    CHECK(!expected.is_discarded());
    CHECK(toJSON(value) == withoutNulls(expected));
  } catch (const snapshot::Error& error) {
    CHECK(error.what()[0] != '\0');
  }
  try {
    const auto snapshot = snapshot::Snapshot::fromJSON(text);
    CHECK(!expected.is_discarded() && expected["format"] == "vorantis-device-snapshot");
  } catch (const snapshot::Error& error) {
    CHECK(error.what()[0] != '\0');
  }
  return 0;
}
