// SPDX-License-Identifier: MIT
#include "updaters/URIParser.h"

#include <dlfcn.h>

#include "base/ATException.h"

namespace {

#ifdef AT_URIPARSER_LIBRARY

template <class Function>
void find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  if (function == nullptr) throw ATException("ATLibraryException", "uriparser has no operation of this name");
}

URIParser open() {
  void* const library = dlopen(AT_URIPARSER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw ATException("ATLibraryException", AT_URIPARSER_LIBRARY " cannot be opened");
  URIParser parser;
  find(library, "uriParseSingleUriExA", parser.parseSingleUriEx);
  find(library, "uriFreeUriMembersA", parser.freeUriMembers);
  find(library, "uriUnescapeInPlaceExA", parser.unescapeInPlaceEx);
  return parser;
}

#else

URIParser open() {
  return {uriParseSingleUriExA, uriFreeUriMembersA, uriUnescapeInPlaceExA};
}

#endif

}  // namespace

const URIParser& URIParser::shared() {
  static const URIParser parser = open();
  return parser;
}
