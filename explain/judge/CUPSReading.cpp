// SPDX-License-Identifier: MIT
#include "explain/judge/CUPSReading.h"

#include <cups/ppd.h>
#include <strings.h>
#ifdef __linux__
#include <sys/mman.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>

#include "explain/judge/IsolatedCall.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // libcups' PPD interface is what the consumers use

namespace {

using JSON = nlohmann::json;

constexpr const char* kEnglish = "en";

struct ClosePPD {
  void operator()(ppd_file_t* ppd) const { ppdClose(ppd); }
};
using OpenedPPD = std::unique_ptr<ppd_file_t, ClosePPD>;

// --- In the process of libcups.

int emptyFile() {
#ifdef __linux__
  return memfd_create("ppd", MFD_CLOEXEC);
#else
  std::FILE* file = std::tmpfile();
  return file == nullptr ? -1 : fileno(file);
#endif
}

// A file that has these bytes and no name.
int fileOf(std::string_view bytes) {
  const int descriptor = emptyFile();
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written <= 0) std::abort();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return descriptor;
}

OpenedPPD openedFrom(int descriptor, ppd_conform_t conformance) {
  lseek(descriptor, 0, SEEK_SET);
  cups_file_t* file = cupsFileOpenFd(dup(descriptor), "r");
  ppdSetConformance(conformance);
  OpenedPPD ppd(ppdOpen2(file));
  cupsFileClose(file);
  return ppd;
}

// libcups takes the language of the process; with SOFTWARE set, whether the system has the locale or not.
void setLanguage(const std::string& language) {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANGUAGE"}) unsetenv(name);
  setenv("SOFTWARE", "CUPS", 1);
  setenv("LANG", language.c_str(), 1);
}

JSON refusalOf(const OpenedPPD& ppd) {
  if (ppd != nullptr) return nullptr;
  int line = 0;
  const ppd_status_t status = ppdLastError(&line);
  return {{"line", line}, {"words", ppdErrorString(status)}};
}

JSON attributesOf(ppd_file_t* ppd, const std::vector<std::string>& names) {
  JSON attributes = JSON::array();
  for (const std::string& name : names) {
    for (const auto* found = ppdFindAttr(ppd, name.c_str(), nullptr); found != nullptr;
         found = ppdFindNextAttr(ppd, name.c_str(), nullptr)) {
      const char* value = found->value == nullptr ? "" : found->value;
      attributes.push_back({found->name, found->spec, found->text, value});
    }
  }
  return attributes;
}

JSON optionOf(const ppd_option_t& option, const ppd_group_t& group) {
  JSON choices = JSON::array();
  for (int index = 0; index < option.num_choices; ++index) {
    choices.push_back({option.choices[index].choice, option.choices[index].text});
  }
  return {{"keyword", option.keyword},
          {"group", group.name},
          {"default", option.defchoice},
          {"text", option.text},
          {"choices", std::move(choices)}};
}

void addOptionsOf(const ppd_group_t& group, JSON& options) {
  for (int index = 0; index < group.num_options; ++index) options.push_back(optionOf(group.options[index], group));
  for (int index = 0; index < group.num_subgroups; ++index) addOptionsOf(group.subgroups[index], options);
}

JSON optionsOf(const OpenedPPD& ppd) {
  JSON options = JSON::array();
  for (int index = 0; index < ppd->num_groups; ++index) addOptionsOf(ppd->groups[index], options);
  return options;
}

// Texts are in the language that is set.
JSON optionsIn(const std::string& language, int descriptor) {
  setLanguage(language);
  const OpenedPPD ppd = openedFrom(descriptor, PPD_CONFORM_RELAXED);
  if (ppd == nullptr) std::abort();  // it was opened before
  ppdLocalize(ppd.get());
  return optionsOf(ppd);
}

// No languages: only whether the bytes are refused.
std::string readByLibcups(std::string_view bytes, const std::vector<std::string>& languages,
                          const std::vector<std::string>& attributes) {
  const int descriptor = fileOf(bytes);
  setLanguage(kEnglish);
  JSON json;
  json["strict"] = refusalOf(openedFrom(descriptor, PPD_CONFORM_STRICT));
  const OpenedPPD ppd = openedFrom(descriptor, PPD_CONFORM_RELAXED);
  json["relaxed"] = refusalOf(ppd);
  json["attributes"] = json["options"] = JSON::array();
  if (ppd != nullptr) {
    json["attributes"] = attributesOf(ppd.get(), attributes);
    for (const std::string& language : languages) json["options"].push_back(optionsIn(language, descriptor));
  }
  const std::vector<std::uint8_t> packed = JSON::to_cbor(json);  // texts that are no UTF-8 come through
  return {packed.begin(), packed.end()};
}

// --- Here.

std::optional<CUPSReading::Refusal> refusalFrom(const JSON& json) {
  if (json.is_null()) return std::nullopt;
  return CUPSReading::Refusal{json["line"], json["words"]};
}

CUPSReading::Option optionFrom(const JSON& json) {
  CUPSReading::Option option{json["keyword"], json["group"], json["default"], {}, {}};
  for (const JSON& choice : json["choices"]) option.choices.push_back({choice[0], {}});
  return option;
}

// The same options in each language, with other texts.
std::vector<CUPSReading::Option> optionsFrom(const JSON& inLanguages) {
  std::vector<CUPSReading::Option> options;
  for (const JSON& inLanguage : inLanguages) {
    for (std::size_t index = 0; index < inLanguage.size(); ++index) {
      if (index == options.size()) options.push_back(optionFrom(inLanguage[index]));
      CUPSReading::Option& option = options[index];
      option.texts.push_back(inLanguage[index]["text"]);
      const JSON& choices = inLanguage[index]["choices"];
      for (std::size_t place = 0; place < option.choices.size(); ++place) {
        option.choices[place].texts.push_back(choices[place][1]);
      }
    }
  }
  return options;
}

void fill(CUPSReading& reading, const std::string& result) {
  const JSON json = JSON::from_cbor(result.begin(), result.end());
  reading.refusal = refusalFrom(json["relaxed"]);
  reading.strictRefusal = refusalFrom(json["strict"]);
  reading.outcome = reading.refusal ? CUPSReading::Outcome::refused : CUPSReading::Outcome::opened;
  reading.options = optionsFrom(json["options"]);
  for (const JSON& each : json["attributes"]) reading.attributes.push_back({each[0], each[1], each[2], each[3]});
}

std::vector<std::string> withEnglishFirst(const std::vector<std::string>& languages) {
  std::vector<std::string> all = {kEnglish};
  for (const std::string& language : languages) {
    if (all.size() == CUPSReading::kMostLanguages) break;
    if (std::find(all.begin(), all.end(), language) == all.end()) all.push_back(language);
  }
  return all;
}

CUPSReading readInIsolation(std::string_view bytes, std::vector<std::string> languages,
                            const std::vector<std::string>& attributes) {
  CUPSReading reading;
  reading.languages = std::move(languages);
  if (bytes.size() > CUPSReading::kLargest) return reading;
  const auto result = IsolatedCall::resultOf([&] { return readByLibcups(bytes, reading.languages, attributes); });
  if (result) fill(reading, *result);
  return reading;
}

}  // namespace

CUPSReading CUPSReading::of(std::string_view bytes) {
  return readInIsolation(bytes, {}, {});
}

CUPSReading CUPSReading::of(std::string_view bytes, const std::vector<std::string>& languages,
                            const std::vector<std::string>& attributes) {
  return readInIsolation(bytes, withEnglishFirst(languages), attributes);
}

const CUPSReading::Choice* CUPSReading::Option::choice(std::string_view choiceName) const {
  const auto found = std::find_if(choices.begin(), choices.end(),
                                  [choiceName](const Choice& each) { return each.name == choiceName; });
  return found == choices.end() ? nullptr : &*found;
}

const CUPSReading::Option* CUPSReading::option(std::string_view keyword) const {
  const auto found = std::find_if(options.begin(), options.end(), [keyword](const Option& each) {
    return each.keyword.size() == keyword.size() &&
           strncasecmp(each.keyword.data(), keyword.data(), keyword.size()) == 0;
  });
  return found == options.end() ? nullptr : &*found;
}

const std::string* CUPSReading::value(std::string_view name) const {
  const auto found =
      std::find_if(attributes.begin(), attributes.end(), [name](const Attribute& each) { return each.name == name; });
  return found == attributes.end() ? nullptr : &found->value;
}
