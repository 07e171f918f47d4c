// SPDX-License-Identifier: MIT
#include "readers/framework/PropertyList.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/ATException.h"
#include "base/Text.h"
#include "readers/DeviceModelLibrary.h"
#include "readers/framework/ObjectiveCGuard.h"

namespace {

ATException unusable(const std::string& what) {
  return ATException::libraryFailure("the device-model library gave " + what);
}

// Absent for a text that is not Unicode, such as one with half of a surrogate pair.
std::optional<std::string> unicodeOf(NSString* text) {
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding];
  if (bytes == nil) return std::nullopt;
  return Text::fromUTF8({static_cast<const char*>([bytes bytes]), [bytes length]});
}

std::string classNameOf(id object) {
  return PropertyList::stringOf(NSStringFromClass([object class]));
}

// What the object says of itself; of one that raises an exception, or says what is no text, the name of its class.
std::string descriptionOf(id object) {
  struct Question {
    id object;
    NSString* answer;
  } question = {object, nil};
  ATCaughtException caught = {};
  ATRunGuarded(
      [](void* context) {
        auto* asked = static_cast<Question*>(context);
        asked->answer = [asked->object description];
      },
      &question, &caught);
  for (char* text : {caught.name, caught.reason, caught.userInfo}) std::free(text);
  const auto description = unicodeOf(question.answer);
  return description ? *description : classNameOf(object);
}

// Foundation has no type of its own for booleans, only a class.
bool isBoolean(NSNumber* number) {
  return [number class] == [[NSNumber numberWithBool:YES] class];
}

DeviceValue numberOf(NSNumber* number) {
  if (isBoolean(number)) return [number boolValue] != NO;
  switch (*[number objCType]) {
    case 'f':
      // The number that is meant: 0.1 and not the 0.10000000149011612 that is nearest to it.
      return std::strtod([[number stringValue] UTF8String], nullptr);
    case 'd':
      return [number doubleValue];
    case 'L':
    case 'Q':
      if (const std::uint64_t value = [number unsignedLongLongValue]; value > std::numeric_limits<std::int64_t>::max())
        return value;
      break;
    default:
      break;
  }
  return static_cast<std::int64_t>([number longLongValue]);
}

class Reader {
 public:
  explicit Reader(ValueBudget& budget) : budget_(budget) {}

  DeviceValue read(id object, int nesting) {
    budget_.spendValue();
    if (auto text = readText(object)) return std::move(*text);
    if ([object isKindOfClass:[NSNumber class]]) return numberOf(object);
    if ([object isKindOfClass:[NSArray class]]) return readList(object, nesting);
    if ([object isKindOfClass:[NSDictionary class]]) return readMap(object, nesting);
    return DeviceValue::ofOtherKind(readDescription(object));
  }

 private:
  static void checkNesting(int nesting) {
    if (nesting >= DeviceModelLibrary::kDeepestNesting) throw unusable("values that are nested too deeply");
  }

  // Absent for what is no text.
  std::optional<std::string> readText(id object) {
    if (![object isKindOfClass:[NSString class]]) return std::nullopt;
    auto text = unicodeOf(object);
    if (text) budget_.spend(text->size());
    return text;
  }

  std::string readDescription(id object) {
    std::string description = descriptionOf(object);
    budget_.spend(description.size());
    return description;
  }

  DeviceValue readList(NSArray* array, int nesting) {
    checkNesting(nesting);
    auto list = std::make_shared<DeviceValue::List>();
    NSEnumerator* elements = [array objectEnumerator];
    while (id element = [elements nextObject]) list->push_back(read(element, nesting + 1));
    return list;
  }

  DeviceValue readMap(NSDictionary* dictionary, int nesting) {
    checkNesting(nesting);
    auto map = std::make_shared<DeviceMap>();
    NSEnumerator* keys = [dictionary keyEnumerator];
    while (id key = [keys nextObject]) {
      budget_.spendValue();
      const id member = [dictionary objectForKey:key];
      if (member == nil) continue;
      if (auto name = readText(key)) {
        map->add(std::move(*name), read(member, nesting + 1));
      } else {
        map->addOtherKey(readDescription(key), read(member, nesting + 1));
      }
    }
    return map;
  }

  ValueBudget& budget_;
};

id arrayOf(const DeviceValue::List& list) {
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:list.size()];
  for (const DeviceValue& element : list) {
    if (const id object = PropertyList::objectOf(element)) [array addObject:object];
  }
  return array;
}

id dictionaryOf(const DeviceMap& map) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithCapacity:map.size()];
  for (const auto& [key, member] : map.entries()) {
    if (const id object = PropertyList::objectOf(member))
      [dictionary setObject:object forKey:PropertyList::textOf(key)];
  }
  return dictionary;
}

}  // namespace

DeviceValue PropertyList::deviceValueOf(id object, ValueBudget& budget) {
  return object == nil ? DeviceValue() : Reader(budget).read(object, 0);
}

id PropertyList::objectOf(const DeviceValue& value) {
  if (const auto* text = value.text()) return textOf(*text);
  if (const auto* integer = value.integer()) return [NSNumber numberWithLongLong:*integer];
  if (const auto* integer = value.unsignedInteger()) return [NSNumber numberWithUnsignedLongLong:*integer];
  if (const auto* number = value.real()) return [NSNumber numberWithDouble:*number];
  if (const auto* flag = value.flag()) return [NSNumber numberWithBool:*flag ? YES : NO];
  if (const auto list = value.list()) return arrayOf(*list);
  if (const auto map = value.map()) return dictionaryOf(*map);
  return nil;
}

std::string PropertyList::stringOf(NSString* text) {
  auto string = unicodeOf(text);
  if (!string) throw unusable("a text that is not Unicode");
  return std::move(*string);
}

NSString* PropertyList::textOf(std::string_view string) {
  return [[[NSString alloc] initWithBytes:string.data() length:string.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}
