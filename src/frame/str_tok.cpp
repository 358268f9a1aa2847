// str_tok: tokens cut by one whole delimiter string, or a walk over nul-separated strings.
//
// The string being walked is cut for the length of one call: the character behind the token
// is saved and overwritten with a nul, and put back at the start of the next call. A walk
// that runs until nil leaves the string as it was.
#include <tivlib/str.h>

#include <cstring>

namespace {

char* tok_pos = nullptr;  // where the last call cut the string
char tok_saved = '\0';    // the character that the cut overwrote

// With a delimiter: skip any run of delimiters at start and give the end of the token. An
// empty delimiter would be found at the start forever; it takes the rest of the text as one
// token instead.
char* token_end(char*& start, const char* delim) {
  const size_t n = std::strlen(delim);
  if (n == 0) return start + std::strlen(start);
  char* found = std::strstr(start, delim);
  while (found == start) {
    start += n;
    found = std::strstr(start, delim);
  }
  return found != nullptr ? found : start + std::strlen(start);
}

// Without a delimiter: the buffer is a list of nul-separated strings ended by an empty one.
char* list_end(char* start) {
  char* p = tok_pos;
  while (*p != '\0') ++p;
  return p != start ? p + 1 : p;
}

}  // namespace

extern "C" {

char* str_tok(char* s, const char* delim) noexcept {
  char* start;
  if (s != nullptr) {
    start = s;
    tok_pos = s;
  } else {
    if (tok_pos == nullptr) return nullptr;  // no walk has been started
    start = tok_pos;
    *tok_pos = tok_saved;
  }
  tok_pos = delim != nullptr ? token_end(start, delim) : list_end(start);
  tok_saved = *tok_pos;
  *tok_pos = '\0';
  return *start != '\0' ? start : nullptr;
}

}  // extern "C"
