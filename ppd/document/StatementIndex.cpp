// SPDX-License-Identifier: MIT
#include "ppd/document/StatementIndex.h"

#include <algorithm>
#include <iterator>

#include "base/Text.h"

namespace {

std::size_t hashOf(std::string_view text) {
  return std::hash<std::string_view>()(text);
}

}  // namespace

std::optional<StatementIndex::Position> StatementIndex::first(const List& list, std::string_view name,
                                                              const Spec& spec) {
  forgetWhenNamesCame(list);
  if (!spec) return names_.first(list, name);
  Specs& specs = specsOf(list, name);
  const Positions& positions = names_.asked(name);
  do {
    const Positions found = askedWithSpec(list, specs, *spec);
    if (!found.empty()) return found.front();
  } while (askNextSpec(list, positions, specs, *spec) || names_.askNext(list, name));
  return std::nullopt;
}

StatementIndex::Positions StatementIndex::all(const List& list, std::string_view name, const Spec& spec) {
  forgetWhenNamesCame(list);
  if (spec) return askedWithSpec(list, allSpecs(list, name), *spec);
  while (names_.askNext(list, name)) {
  }
  const Positions& positions = names_.asked(name);
  Positions present;
  std::copy_if(positions.begin(), positions.end(), std::back_inserter(present),
               [&list](Position position) { return list.at(position) != nullptr; });
  return present;
}

StatementIndex::Positions StatementIndex::allWithSpecContaining(const List& list, std::string_view name,
                                                                std::string_view part) {
  forgetWhenNamesCame(list);
  Specs& specs = allSpecs(list, name);
  for (; specs.inParts < specs.present.size(); ++specs.inParts) {
    const Position position = specs.present[specs.inParts];
    if (list.at(position) != nullptr) specs.parts.add(*list.at(position)->spec(), position);
  }
  const Positions& candidates = specs.parts.candidates(part);
  Positions found;
  std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(found), [&](Position position) {
    return list.at(position) != nullptr && Text::contains(*list.at(position)->spec(), part);
  });
  return found;
}

// All statements of the name asked for their specs.
StatementIndex::Specs& StatementIndex::allSpecs(const List& list, std::string_view name) {
  Specs& specs = specsOf(list, name);
  while (names_.askNext(list, name)) {
  }
  while (askNextSpec(list, names_.asked(name), specs, std::nullopt)) {
  }
  return specs;
}

// The specs are noted by the positions of names, so they go together.
void StatementIndex::forgetWhenNamesCame(const List& list) {
  if (names_.forgetWhenNamesCame(list)) specs_.clear();
}

// The specs of this name, begun anew when specs have come to statements that had none.
StatementIndex::Specs& StatementIndex::specsOf(const List& list, std::string_view name) {
  const auto found = specs_.find(name);
  if (found == specs_.end()) return specs_[std::string(name)];
  Specs& specs = found->second;
  const auto hasSpecNow = [&list](Position position) {
    return list.at(position) != nullptr && list.at(position)->spec();
  };
  if (std::any_of(specs.without.begin(), specs.without.end(), hasSpecNow)) specs = Specs();
  return specs;
}

// Goes on to the next statement of this spec; false when there is no more among the positions.
bool StatementIndex::askNextSpec(const List& list, const Positions& positions, Specs& specs, const Spec& spec) {
  while (specs.asked < positions.size()) {
    const Position position = positions[specs.asked++];
    const auto& statement = list.at(position);
    if (statement == nullptr) continue;
    const auto given = statement->spec();
    if (given) specs.byHash.emplace(hashOf(*given), position);
    (given ? specs.present : specs.without).push_back(position);
    if (given && given == spec) return true;
  }
  return false;
}

// Those of the spec, in list order, as far as the statements have been asked.
StatementIndex::Positions StatementIndex::askedWithSpec(const List& list, Specs& specs, std::string_view spec) {
  Positions found;
  auto [each, end] = specs.byHash.equal_range(hashOf(spec));
  while (each != end) {
    const auto& statement = list.at(each->second);
    if (statement != nullptr && statement->spec() == spec) found.push_back(each->second);
    each = statement == nullptr ? specs.byHash.erase(each) : std::next(each);
  }
  std::sort(found.begin(), found.end());
  return found;
}
