// SPDX-License-Identifier: MIT
#include "queues/StatusWriters.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "explain/report/Wording.h"

namespace {

using State = QueueJudgement::State;

int exitStatusOf(State state) {
  switch (state) {
    case State::stale:
    case State::edited:
      return 1;
    case State::sourceGone:
    case State::wouldFail:
      return 2;
    default:
      return 0;
  }
}

std::string textOf(const QueueJudgement& judged) {
  std::string text = fmt::format("{}: {}\n", judged.queue, Wording::visible(judged.text()));
  for (const MediaChange& change : judged.changes) text += fmt::format("  {}\n", Wording::visible(change.text()));
  return text;
}

// A value of a label (OpenMetrics 1.0).
std::string escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (character == '\\' || character == '"') result += '\\';
    result += character == '\n' ? ' ' : character;
  }
  return result;
}

}  // namespace

std::string StatusWriter::begin() const {
  if (format_ == Format::JSON) return R"({"format": "vorantis-queues-status", "formatVersion": 1, "queues": [)";
  if (format_ == Format::text) return "";
  return "# TYPE vorantis_queue_state stateset\n"
         "# HELP vorantis_queue_state Whether the queue's PPD is what its setup would give now.\n";
}

std::string StatusWriter::of(const QueueJudgement& judged) {
  exitStatus_ = std::max(exitStatus_, exitStatusOf(judged.state));
  if (format_ == Format::text) return textOf(judged);
  if (format_ == Format::JSON) return (std::exchange(isFirst_, false) ? "\n" : ",\n") + JSONOf(judged);
  std::string lines;
  for (const char* state : QueueJudgement::kStates) {
    lines += fmt::format("vorantis_queue_state{{queue=\"{}\",vorantis_queue_state=\"{}\"}} {:d}\n",
                         escaped(judged.queue), state, std::string_view(state) == judged.stateName());
  }
  return lines;
}

std::string StatusWriter::JSONOf(const QueueJudgement& judged) const {
  nlohmann::ordered_json json = {{"name", judged.queue},    {"state", judged.stateName()}, {"edited", judged.isEdited},
                                 {"source", judged.source}, {"version", judged.version},   {"reason", judged.reason}};
  json["changes"] = nlohmann::ordered_json::array();
  for (const MediaChange& change : judged.changes) {
    json["changes"].push_back({{"kind", change.kindName()},
                               {"ID", change.before.ID.empty() ? change.after.ID : change.before.ID},
                               {"before", {{"choice", change.before.choice}, {"name", change.before.name}}},
                               {"after", {{"choice", change.after.choice}, {"name", change.after.name}}}});
  }
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string StatusWriter::end() const {
  if (format_ == Format::JSON) return "\n]}\n";
  return format_ == Format::openMetrics ? "# EOF\n" : "";
}
