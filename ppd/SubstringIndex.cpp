// SPDX-License-Identifier: MIT
#include "ppd/SubstringIndex.h"

#include <algorithm>

SubstringIndex::Number SubstringIndex::add(std::string_view text) {
  const auto number = static_cast<Number>(removed_.size());
  removed_.push_back(false);
  StateNumber last = kStart;
  for (const char byte : text) {
    last = extend(last, byte);
    endText(last);
  }
  return number;
}

// The state of the parts of `last` with `byte` behind them.
SubstringIndex::StateNumber SubstringIndex::extend(StateNumber last, char byte) {
  const std::uint32_t length = states_[last].length + 1;
  if (const StateNumber* known = next(last, byte)) {
    const StateNumber target = *known;
    return states_[target].length == length ? target : cloneFor(last, byte, target);
  }
  const StateNumber added = addState(length);
  StateNumber from = last;
  for (; from != kNone && next(from, byte) == nullptr; from = states_[from].link) {
    states_[from].next.emplace_back(byte, added);
  }
  if (from == kNone) {
    linkTo(added, kStart);
    return added;
  }
  const StateNumber target = *next(from, byte);
  const bool isLongest = states_[target].length == states_[from].length + 1;
  linkTo(added, isLongest ? target : cloneFor(from, byte, target));
  return added;
}

// Splits off from `target` the parts that are reached from `from` and its suffixes.
SubstringIndex::StateNumber SubstringIndex::cloneFor(StateNumber from, char byte, StateNumber target) {
  const StateNumber clone = addState(states_[from].length + 1);
  states_[clone].next = states_[target].next;
  states_[clone].first = states_[target].first;
  states_[clone].exhausted = states_[target].exhausted;
  linkTo(clone, states_[target].link);
  unlink(target);
  linkTo(target, clone);
  for (StateNumber each = from; each != kNone; each = states_[each].link) {
    StateNumber* const known = next(each, byte);
    if (known == nullptr || *known != target) break;
    *known = clone;
  }
  return clone;
}

SubstringIndex::StateNumber SubstringIndex::addState(std::uint32_t length) {
  State state;
  state.length = length;
  state.first = static_cast<Number>(removed_.size() - 1);
  states_.push_back(std::move(state));
  return static_cast<StateNumber>(states_.size() - 1);
}

void SubstringIndex::linkTo(StateNumber state, StateNumber link) {
  states_[state].link = link;
  states_[state].nextBeside = states_[link].firstBelow;
  states_[link].firstBelow = state;
}

// A link has at most one state for each byte that can stand in front of its parts, so this walk is short.
void SubstringIndex::unlink(StateNumber state) {
  StateNumber* place = &states_[states_[state].link].firstBelow;
  while (*place != state) place = &states_[*place].nextBeside;
  *place = states_[state].nextBeside;
}

// Notes that the text being added has a beginning in this state, which makes the states above worth visiting again.
void SubstringIndex::endText(StateNumber state) {
  ends_.push_back({static_cast<Number>(removed_.size() - 1), states_[state].ends});
  states_[state].ends = static_cast<std::uint32_t>(ends_.size() - 1);
  states_[state].exhausted = false;
  for (StateNumber each = states_[state].link; each != kNone && states_[each].exhausted; each = states_[each].link) {
    states_[each].exhausted = false;
  }
}

SubstringIndex::StateNumber* SubstringIndex::next(StateNumber from, char byte) {
  for (auto& [label, target] : states_[from].next) {
    if (label == byte) return &target;
  }
  return nullptr;
}

std::optional<SubstringIndex::StateNumber> SubstringIndex::find(std::string_view part) const {
  if (part.empty()) return std::nullopt;
  StateNumber state = kStart;
  for (const char byte : part) {
    const auto& next = states_[state].next;
    const auto found = std::find_if(next.begin(), next.end(), [byte](const auto& edge) { return edge.first == byte; });
    if (found == next.end()) return std::nullopt;
    state = found->second;
  }
  return state;
}

std::optional<SubstringIndex::Number> SubstringIndex::firstContaining(std::string_view part) const {
  const auto state = find(part);
  if (!state) return std::nullopt;
  return states_[*state].first;
}

std::vector<SubstringIndex::Number> SubstringIndex::allContaining(std::string_view part) {
  const auto top = find(part);
  if (!top) return {};
  const std::vector<StateNumber> below = statesBelow(*top);
  std::vector<Number> found;
  for (const StateNumber state : below) {
    for (auto end = states_[state].ends; end != kNone; end = ends_[end].next) {
      if (!removed_[ends_[end].text]) found.push_back(ends_[end].text);
    }
  }
  if (found.empty()) markExhausted(below);
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

// The state and those below it, exhausted ones left out.
std::vector<SubstringIndex::StateNumber> SubstringIndex::statesBelow(StateNumber top) const {
  std::vector<StateNumber> below;
  if (!states_[top].exhausted) below.push_back(top);
  for (std::size_t index = 0; index < below.size(); ++index) {
    for (auto each = states_[below[index]].firstBelow; each != kNone; each = states_[each].nextBeside) {
      if (!states_[each].exhausted) below.push_back(each);
    }
  }
  return below;
}

void SubstringIndex::markExhausted(const std::vector<StateNumber>& downwards) {
  for (const StateNumber state : downwards) states_[state].exhausted = true;
}
