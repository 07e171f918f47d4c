// SPDX-License-Identifier: MIT
#include "ppd/document/StatementIndex.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>

#include "base/Text.h"

namespace {

using Position = StatementIndex::Position;

constexpr Position kNone = std::numeric_limits<Position>::max();

std::size_t hashOf(std::string_view text) {
  return std::hash<std::string_view>()(text);
}

std::optional<Position> walkTo(const StatementIndex::List& list, std::string_view name,
                               const StatementIndex::Spec& spec) {
  for (Position position = 1; position < list.positionsEnd(); ++position) {
    const auto& statement = list.at(position);
    if (statement != nullptr && statement->name() == name && (!spec || statement->spec() == spec)) return position;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Position> StatementIndex::first(const List& list, std::string_view name, const Spec& spec) {
  if (!wasAsked_) {
    wasAsked_ = true;
    return walkTo(list, name, spec);
  }
  return spec ? firstWithSpec(list, name, *spec) : names_.first(list, name);
}

std::optional<Position> StatementIndex::firstWithSpec(const List& list, std::string_view name, std::string_view spec) {
  Specs& specs = specsOf(name);
  const auto known = firstAskedWithSpec(list, specs, spec);
  if (const auto open = askOpen(list, name, specs, spec, known)) return open;
  if (known) return known;
  while (const auto next = names_.askNext(list, name)) {
    ++specs.taken;
    const Spec given = askSpec(list, specs, *next);
    if (!given) specs.open.push_back(*next);
    if (given == spec) return next;
  }
  return std::nullopt;
}

// In front of `end`, asks the statements without a name for theirs, and those of the name without a spec for theirs, in
// list order, up to one that has both now.
std::optional<Position> StatementIndex::askOpen(const List& list, std::string_view name, Specs& specs,
                                                std::string_view spec, std::optional<Position> end) {
  const Position behind = end.value_or(kNone);
  auto open = specs.open.begin();
  Position nameless = names_.namelessFrom(0).value_or(kNone);
  for (;;) {
    const Position next = open == specs.open.end() ? kNone : *open;
    if (std::min(next, nameless) >= behind) return std::nullopt;
    if (nameless < next) {
      const auto named = names_.askNamelessAgain(list, name, nameless, nameless + 1);
      if (named && list.at(*named)->spec() == spec) return named;
      nameless = names_.namelessFrom(nameless + 1).value_or(kNone);
      continue;
    }
    const Spec given = askSpec(list, specs, next);
    open = given || list.at(next) == nullptr ? specs.open.erase(open) : std::next(open);
    if (given == spec) return next;
  }
}

StatementIndex::Positions StatementIndex::all(const List& list, std::string_view name, const Spec& spec) {
  wasAsked_ = true;
  if (spec) return askedWithSpec(list, allSpecs(list, name), *spec);
  names_.askAll(list, name);
  const Positions& positions = names_.of(name).positions;
  Positions present;
  std::copy_if(positions.begin(), positions.end(), std::back_inserter(present),
               [&list](Position position) { return list.at(position) != nullptr; });
  return present;
}

StatementIndex::Positions StatementIndex::allWithSpecContaining(const List& list, std::string_view name,
                                                                std::string_view part) {
  wasAsked_ = true;
  Specs& specs = allSpecs(list, name);
  for (; specs.inParts < specs.present.size(); ++specs.inParts) {
    const Position position = specs.present[specs.inParts];
    if (list.at(position) != nullptr) specs.parts.add(*list.at(position)->spec(), position);
  }
  const PartIndex::Numbers& candidates = specs.parts.candidates(part);
  Positions found;
  std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(found), [&](Position position) {
    const auto& statement = list.at(position);
    return statement != nullptr && Text::contains(*statement->spec(), part);
  });
  std::sort(found.begin(), found.end());
  return found;
}

// All statements of the name asked for their specs.
StatementIndex::Specs& StatementIndex::allSpecs(const List& list, std::string_view name) {
  names_.askAll(list, name);
  Specs& specs = specsOf(name);
  std::erase_if(specs.open,
                [&](Position position) { return askSpec(list, specs, position) || list.at(position) == nullptr; });
  return specs;
}

// What is known of the specs of this name; begun anew when a statement has got its name in between.
StatementIndex::Specs& StatementIndex::specsOf(std::string_view name) {
  const auto found = specs_.find(name);
  Specs& specs = found == specs_.end() ? specs_[std::string(name)] : found->second;
  const auto& named = names_.of(name);
  if (specs.cameLater != named.cameLater) {
    specs = Specs();
    specs.cameLater = named.cameLater;
  }
  specs.open.insert(specs.open.end(), named.positions.begin() + static_cast<std::ptrdiff_t>(specs.taken),
                    named.positions.end());
  specs.taken = named.positions.size();
  return specs;
}

// The spec of the statement, noted when it has one: those of one hash in list order.
StatementIndex::Spec StatementIndex::askSpec(const List& list, Specs& specs, Position position) {
  const auto& statement = list.at(position);
  const Spec given = statement == nullptr ? std::nullopt : statement->spec();
  if (!given) return given;
  const std::size_t hash = hashOf(*given);
  auto behind = specs.byHash.upper_bound(hash);
  while (behind != specs.byHash.begin() && std::prev(behind)->first == hash && std::prev(behind)->second > position) {
    --behind;
  }
  specs.byHash.emplace_hint(behind, hash, position);
  specs.present.push_back(position);
  return given;
}

std::optional<Position> StatementIndex::firstAskedWithSpec(const List& list, Specs& specs, std::string_view spec) {
  auto [each, end] = specs.byHash.equal_range(hashOf(spec));
  while (each != end) {
    const auto& statement = list.at(each->second);
    if (statement != nullptr && statement->spec() == spec) return each->second;
    each = statement == nullptr ? specs.byHash.erase(each) : std::next(each);
  }
  return std::nullopt;
}

// In list order, as far as the statements have been asked.
StatementIndex::Positions StatementIndex::askedWithSpec(const List& list, const Specs& specs, std::string_view spec) {
  Positions found;
  const auto [begin, end] = specs.byHash.equal_range(hashOf(spec));
  for (auto each = begin; each != end; ++each) {
    const auto& statement = list.at(each->second);
    if (statement != nullptr && statement->spec() == spec) found.push_back(each->second);
  }
  return found;
}
