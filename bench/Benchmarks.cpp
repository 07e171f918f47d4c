// SPDX-License-Identifier: MIT
//
// The tool's pieces, each over four sizes, with the growth that Google Benchmark fits to them ("BigO", "RMS"). What is
// made before a piece, and taken apart after it, is not timed.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "driver/ATAutoSetupTool.h"
#include "library/Snapshot.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"

namespace {

constexpr int kSmallest = 1000;
constexpr int kLargest = 8000;

// A file that goes away with the object.
class File {
 public:
  explicit File(const std::string& bytes) : path_("autosetup-benchmark-XXXXXX") {
    if (mkstemp(path_.data()) < 0) std::abort();
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { std::remove(path_.c_str()); }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

std::unique_ptr<ATAutoSetupTool> toolFor(const std::string& path) {
  const std::array<const char*, 3> arguments = {"tool", "socket://192.0.2.10:9100", path.c_str()};
  return ATAutoSetupTool::initWithArgc(static_cast<int>(arguments.size()), arguments.data());
}

struct CountingOutput : ATOutput {
  std::size_t count = 0;
  std::size_t write(std::string_view bytes) override {
    count += bytes.size();
    return bytes.size();
  }
};

std::string statement(int number) {
  return "*Setting S" + std::to_string(number) + "/Setting " + std::to_string(number) + ": \"value\"\n";
}

std::string statements(int count) {
  std::string text = "*PPD-Adobe: \"4.3\"\n";
  for (int number = 0; number < count; ++number) text += statement(number);
  return text;
}

// Each statement a separate object; the document is the caller's.
void fill(ATPPD& ppd, int count) {
  for (int number = 0; number < count; ++number) ppd.addString(statement(number), PPDLineTypeStatement);
}

void timeRun(benchmark::State& state, const File& file) {
  state.PauseTiming();
  auto tool = toolFor(file.path());
  CountingOutput output;
  state.ResumeTiming();
  const bool succeeded = tool->run(output);
  state.PauseTiming();
  if (!succeeded) state.SkipWithError("the run failed");
  tool.reset();
  state.ResumeTiming();
}

void Parse(benchmark::State& state) {
  const File file(statements(static_cast<int>(state.range(0))));
  for (auto _ : state) timeRun(state, file);
  state.SetComplexityN(state.range(0));
}

void LookUp(benchmark::State& state) {
  ATPPD ppd;
  const int count = static_cast<int>(state.range(0));
  fill(ppd, count);
  for (auto _ : state) {
    for (int number = 0; number < count; ++number) {
      benchmark::DoNotOptimize(ppd.attributeForName("Setting", "S" + std::to_string(number)));
    }
  }
  state.SetComplexityN(state.range(0));
}

void Add(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto ppd = std::make_unique<ATPPD>();
    fill(*ppd, 100);
    state.ResumeTiming();
    for (int number = 0; number < count; ++number) {
      ppd->addPPDAttribute(ATPPDAttribute::initWithName("Added", "S" + std::to_string(number), std::nullopt, "x"));
    }
    state.PauseTiming();
    ppd.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

void Write(benchmark::State& state) {
  ATPPD ppd;
  fill(ppd, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::size_t size = 0;
    for (const auto& attribute : ppd.attributes()) attribute->setValue("\"changed\"");  // composes each line
    ppd.giveStringsTo([&size](const StatementString& string) { size += string.size(); });
    benchmark::DoNotOptimize(size);
  }
  state.SetComplexityN(state.range(0));
}

std::string printer(const std::string& updater) {
  return R"ppd(*PPD-Adobe: "4.3"
*ModelName: "Z9"
*cupsLanguages: "en de fr it"
*QZPPDUpdaters: ")ppd" +
         updater + R"ppd("
*cupsICCQualifier1: "QZGlossEnhancerSimplified"
*cupsICCQualifier3: "OutputMode"
*QZValueAttributes MediaType.Plain: "glossy=YES;defaultGE='False'"
*OpenGroup: QZImagingOptions/Imaging Options
*OpenUI *MediaType/Media Type: PickOne
*DefaultMediaType: Plain
*MediaType Plain/Plain: "(factory-1001)"
*CloseUI: *MediaType
*CloseGroup: QZImagingOptions
)ppd";
}

std::string device(int media) {
  std::string items;
  for (int number = 0; number < media; ++number) {
    const std::string id = std::to_string(number);
    items += (number == 0 ? "\"" : ",\"") + id + R"(": {"Name": "Medium )" + id + R"(", "MediumID": "id-)" + id +
             R"(", "CategoryName": "Custom", "CategoryID": "CUSTOM", "ParentID": "factory-1001", "ICCProfiles": [
               {"URL": "file:///p/a.icc", "ICCName": "A", "GlossEnhancer": "OFF", "OutputMode": "Best"},
               {"URL": "file:///p/b.icc", "ICCName": "B", "GlossEnhancer": "FULLPAGE", "OutputMode": "Best"}]})";
  }
  return R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [
             {"dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "1", "MediaInfo": {)" +
         items + "}}}}]}";
}

// A whole setup in this process: the number of media on the device, for one updater; again: on the first one's result.
void Setup(benchmark::State& state, const std::string& updater, bool again) {
  registerReaderImplementations();
  SnapshotDeviceModelLibrary library(snapshot::Snapshot::fromJSON(device(static_cast<int>(state.range(0)))));
  DeviceModelLibrary::setDefaultLibrary(&library);
  const File first(printer(updater));
  ATMemoryOutput result;
  toolFor(first.path())->run(result);
  const File second(result.bytes());
  for (auto _ : state) timeRun(state, again ? second : first);
  DeviceModelLibrary::setDefaultLibrary(nullptr);
  state.SetComplexityN(state.range(0));
}

void overFourSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->RangeMultiplier(2)->Range(kSmallest, kLargest)->Unit(benchmark::kMillisecond)->Complexity();
}

BENCHMARK(Parse)->Apply(overFourSizes);
BENCHMARK(LookUp)->Apply(overFourSizes);
BENCHMARK(Add)->Apply(overFourSizes);
BENCHMARK(Write)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, PostScript, "ATMediaTypePSPPDUpdater", false)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, PCL3, "ATMediaTypePCL3PPDUpdater", false)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, PCL3Again, "ATMediaTypePCL3PPDUpdater", true)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, Qualifier3, "ATMediaTypePCL3Qualifier3PPDUpdater", false)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, Qualifier1, "ATMediaTypePCL3Qualifier1PPDUpdater", false)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, Glossy, "ATGlossyProfilePCL3PPDUpdater", false)->Apply(overFourSizes);
BENCHMARK_CAPTURE(Setup, PDLCommands, "ATPDLCommandTypePPDUpdater", false)->Apply(overFourSizes);

}  // namespace

BENCHMARK_MAIN();
