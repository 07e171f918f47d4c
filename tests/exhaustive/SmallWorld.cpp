// SPDX-License-Identifier: MIT
//
// Every document of up to N lines of a small world, read and written back: each line shape in each place, with each
// kind of line end, with and without a line end at the end of the file, with and without an updater that changes
// nothing. usage: small_world N    prints how many round trips there were

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/DocumentReading.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"

namespace {

constexpr std::array<const char*, 14> kShapes = {
    "*Foo: \"a\"",
    "*Foo: \"a",
    "b\"",
    "*End",
    "*% c",
    "",
    "*OpenGroup: G/G",
    "*CloseGroup: G",
    "*OpenUI *M/M: PickOne",
    "*CloseUI: *M",
    "*DefaultM: A",
    "*M A/A: \"1\"",
    "*OrderDependency: 1 A *M",
    "  ",
};
constexpr std::array<const char*, 3> kLineEnds = {"\n", "\r\n", "\r"};

// A reader without data: no updater changes anything.
class NoData : public IATDataReader {
 public:
  DeviceValue dataForKey(std::string_view) const override { return {}; }
  DeviceValue familyNameForKey(std::string_view) const override { return {}; }
  std::optional<std::string> printerURI() const override { return "x"; }
};

class World {
 public:
  void enumerate(std::size_t lines) {
    tryDocument();
    if (lines == 0) return;
    for (const char* shape : kShapes) {
      shapes_.push_back(shape);
      enumerate(lines - 1);
      shapes_.pop_back();
    }
  }
  std::size_t roundTrips() const { return roundTrips_; }

 private:
  void tryDocument() {
    for (const char* lineEnd : kLineEnds) {
      std::string text;
      for (const char* shape : shapes_) text.append(shape).append(lineEnd);
      roundTrip(text);
      if (!shapes_.empty()) roundTrip(text.substr(0, text.size() - std::string_view(lineEnd).size()));
    }
  }

  void roundTrip(const std::string& text) {
    const auto reading = DocumentReading::read(text);
    const std::string expected = DocumentReading::expectedText(reading->lines);
    check(DocumentReading::textOf(reading->ppd) == expected, text);
    check(ATMediaTypePSPPDUpdater().updatePPD(&reading->ppd, &reader_), text);
    reading->ppd.PPDObjects();
    for (const auto& group : reading->ppd.groups()) {
      for (const auto& option : group->options()) option->choices();
    }
    check(DocumentReading::textOf(reading->ppd) == expected, text);
    roundTrips_ += 2;
  }

  static void check(bool holds, const std::string& text) {
    if (holds) return;
    std::fprintf(stderr, "not written back as read:\n%s\n", text.c_str());
    std::exit(1);
  }

  std::vector<const char*> shapes_;
  NoData reader_;
  std::size_t roundTrips_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const auto start = std::chrono::steady_clock::now();
  World world;
  world.enumerate(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 4);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("%zu round trips, no mismatch, %.1f s\n", world.roundTrips(), seconds.count());
}
