// The streaming reader: read window, advances, tokens, page bookkeeping.
#include "profile/reader.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tiv::profile {
namespace {

constexpr int kEnd = -1;

// Bytes that end a plain run inside a token: the separators, CR (which may be half of a line
// end) and 255 (which reads as the end of the file).
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> t{};
  for (int b = 0; b < 256; ++b) t[b] = true;
  t[' '] = t['\t'] = t['\n'] = t['\r'] = t[255] = false;
  return t;
}();

constexpr bool is_separator(int c) { return c == ' ' || c == '\t' || c == '\n'; }

// A byte as the signed character that `current` keeps: 255 becomes -1.
constexpr int32_t as_signed(int b) { return b == kEnd ? kEnd : static_cast<int32_t>(static_cast<signed char>(b)); }

// Pulls the next block into the window. Only called when the window is used up.
bool refill(profil_handle& h) {
  Window& w = h.window;
  w.origin += w.filled;
  w.next = 0;
  w.filled = 0;
  const int32_t got = fio_read_to_buf(w.bytes, 1, kWindowSize, h.file);
  if (got <= 0) return false;
  w.filled = got;
  return true;
}

// Next byte of the file (0..255) with CR LF read as LF, or kEnd.
inline int fetch(profil_handle& h) {
  Window& w = h.window;
  if (w.next >= w.filled && !refill(h)) [[unlikely]] return kEnd;
  const unsigned char b = w.bytes[w.next++];
  if (b != '\r') [[likely]] return b;
  if (w.next >= w.filled && !refill(h)) return b;
  if (w.bytes[w.next] == '\n') {
    ++w.next;
    return '\n';
  }
  return b;
}

// A line has ended and the reader stands behind it: count it, and remember where the next line
// starts.
void note_line_end(profil_handle& h) {
  ++h.line;
  if (h.line >= kPageLines) {
    ++h.page;
    h.line = 0;
    h.line_offsets[0] = position(h);
    for (int k = 1; k < kPageLines; ++k) h.line_offsets[k] = -1;
  } else if (h.line_offsets[h.line] == -1) {
    h.line_offsets[h.line] = position(h);
  }
}

// Index of the first LF or 255 in the unread part of the window, or `filled` if there is none.
int32_t find_line_stop(const Window& w) {
  const unsigned char* from = w.bytes + w.next;
  const auto length = static_cast<size_t>(w.filled - w.next);
  const void* lf = std::memchr(from, '\n', length);
  const size_t upto = lf ? static_cast<size_t>(static_cast<const unsigned char*>(lf) - from) : length;
  const void* ff = std::memchr(from, 255, upto);
  if (ff) return static_cast<int32_t>(static_cast<const unsigned char*>(ff) - w.bytes);
  return w.next + static_cast<int32_t>(upto);
}

constexpr bool is_blank_or_tab(unsigned char b) { return b == ' ' || b == '\t'; }

// Index of the first byte at or behind i that is not a field character (kPlain), or `filled`.
inline int32_t plain_run_end(const Window& w, int32_t i) {
#if defined(__SSE2__)
  while (i + 16 <= w.filled) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(w.bytes + i));
    const __m128i stops = _mm_or_si128(
        _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\t'))),
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\n')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\r'))),
                     _mm_cmpeq_epi8(v, _mm_set1_epi8(static_cast<char>(0xFF)))));
    const auto mask = static_cast<uint32_t>(_mm_movemask_epi8(stops));
    if (mask != 0) return i + std::countr_zero(mask);
    i += 16;
  }
#endif
  while (i < w.filled && kPlain[w.bytes[i]]) ++i;
  return i;
}

// Index of the first byte at or behind i that is neither a blank nor a tab, or `filled`.
inline int32_t blank_run_end(const Window& w, int32_t i) {
#if defined(__SSE2__)
  while (i + 16 <= w.filled) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(w.bytes + i));
    const __m128i blanks = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\t')));
    const auto mask = static_cast<uint32_t>(~_mm_movemask_epi8(blanks)) & 0xFFFFu;
    if (mask != 0) return i + std::countr_zero(mask);
    i += 16;
  }
#endif
  while (i < w.filled && is_blank_or_tab(w.bytes[i])) ++i;
  return i;
}

// Passes separators before a token and leaves its first character in `current`. Gives false at
// the end of the file. Runs of blanks and tabs are taken straight from the window: moving onto
// a blank, a tab or a token character never ends a line, so only LF, CR, 255 and the end of
// the window need the tracked advance.
[[gnu::always_inline]] inline bool skip_separators(profil_handle& h) {
  Window& w = h.window;
  while (is_separator(h.current)) {
    const int32_t run = blank_run_end(w, w.next);
    if (run < w.filled && kPlain[w.bytes[run]]) {
      h.current = as_signed(w.bytes[run]);
      w.next = run + 1;
      return true;
    }
    if (run > w.next) {
      h.current = w.bytes[run - 1];
      w.next = run;
    }
    tracked_advance(h);
  }
  return h.current != kEnd;
}

// Token body, shared by read_token and skip_token. `current` is the token's first character.
// Plain runs are taken straight from the window, and so is a blank or tab that ends the token
// (no line ends there); everything else goes through the tracked advance.
template <bool Keep>
int token_body(profil_handle& h, char* out) {
  int kept = 0;
  Window& w = h.window;
  for (;;) {
    if constexpr (Keep) {
      if (kept < kFieldMax) out[kept++] = static_cast<char>(h.current);
    }
    const int32_t run = plain_run_end(w, w.next);
    if constexpr (Keep) {
      const int room = kFieldMax - kept;
      const int take = run - w.next < room ? run - w.next : room;
      if (take > 0 && take <= 16 && kept + 16 <= kFieldMax + 1) {
        // Short fields: one fixed copy (the window has slack behind it, out has room).
        std::memcpy(out + kept, w.bytes + w.next, 16);
        kept += take;
      } else if (take > 0) {
        std::memcpy(out + kept, w.bytes + w.next, static_cast<size_t>(take));
        kept += take;
      }
    }
    if (run < w.filled && is_blank_or_tab(w.bytes[run])) {
      h.current = w.bytes[run];
      w.next = run + 1;
      break;
    }
    if (run > w.next) {
      h.current = as_signed(w.bytes[run - 1]);
      w.next = run;
    }
    tracked_advance(h);
    if (is_separator(h.current) || h.current == kEnd) break;
  }
  if constexpr (Keep) out[kept] = '\0';
  return kept;
}

// Raw-advances past the next line end. Gives false if the file ends first.
bool pass_line_end_raw(profil_handle& h) {
  Window& w = h.window;
  for (;;) {
    if (h.current == kEnd) return false;
    if (w.next < w.filled) {
      const int32_t stop = find_line_stop(w);
      if (stop < w.filled) {
        w.next = stop;  // the stop byte itself goes through fetch below
      } else {
        w.next = w.filled;
      }
    }
    raw_advance(h);
    if (h.current == '\n') return true;
  }
}

}  // namespace

int32_t position(const profil_handle& h) { return h.window.origin + h.window.next; }

void seek(profil_handle& h, int32_t offset) {
  Window& w = h.window;
  if (offset >= w.origin && offset <= w.origin + w.filled) {
    w.next = offset - w.origin;
    return;
  }
  if (fio_seek(h.file, offset, 0) != 0) {
    // The stream stays where it was; an empty window at that place keeps the invariant.
    w.origin += w.filled;
    w.next = w.filled = 0;
    return;
  }
  w.origin = offset;
  w.next = w.filled = 0;
}

void raw_advance(profil_handle& h) {
  if (h.current == kEnd) return;
  h.current = as_signed(fetch(h));
}

void tracked_advance(profil_handle& h) {
  const int32_t old = h.current;
  if (old == kEnd) return;
  h.current = as_signed(fetch(h));
  if (old == '\n' || (h.current != '\n' && h.current != kEnd)) return;
  note_line_end(h);
}

void rewind(profil_handle& h) {
  seek(h, h.data_start);
  h.current = ' ';
  h.page = 0;
  h.line = 0;
  h.line_offsets[0] = h.data_start;
  for (int k = 1; k < kPageLines; ++k) h.line_offsets[k] = -1;
}

#if defined(__SSE2__)
namespace {

// The common case of read_token in one 16-byte look: blanks or tabs, a field of at most 15
// characters, and a blank or tab behind it, all inside the window. Nothing of that ends a
// line, so no bookkeeping is due. Gives the length, or -1 if the case does not apply and
// nothing was consumed.
int short_token(profil_handle& h, char* out) {
  Window& w = h.window;
  if (!is_separator(h.current) || w.next + 16 > w.filled) return -1;
  const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(w.bytes + w.next));
  const auto sep = static_cast<uint32_t>(_mm_movemask_epi8(
      _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\t')))));
  const auto special = static_cast<uint32_t>(_mm_movemask_epi8(
      _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\n')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\r'))),
                   _mm_cmpeq_epi8(v, _mm_set1_epi8(static_cast<char>(0xFF))))));
  const uint32_t field = ~(sep | special) & 0xFFFFu;
  if (field == 0) return -1;
  const int first = std::countr_zero(field);
  if ((special & ((1u << first) - 1u)) != 0) return -1;  // a line end before the field
  const uint32_t stops = (sep | special) & ~((2u << first) - 1u);
  if (stops == 0) return -1;
  const int stop = std::countr_zero(stops);
  if ((sep >> stop & 1u) == 0) return -1;  // the field ends at a line end or a 255
  const int length = stop - first;
  std::memcpy(out, w.bytes + w.next + first, 16);  // the window has slack, out room for 80
  out[length] = '\0';
  h.current = w.bytes[w.next + stop];
  w.next += stop + 1;
  return length;
}

}  // namespace
#endif

int read_token(profil_handle& h, char* out) {
#if defined(__SSE2__)
  if (const int length = short_token(h, out); length >= 0) return length;
#endif
  if (!skip_separators(h)) {
    out[0] = '\0';
    return 0;
  }
  return token_body<true>(h, out);
}

bool skip_token(profil_handle& h) {
  if (!skip_separators(h)) return false;
  token_body<false>(h, nullptr);
  return true;
}

#if defined(__SSE2__)
namespace {

// Passes whole fields 16 bytes at a time while the window holds only blanks, tabs and field
// characters; stops in front of any LF, CR or 255, which need the tracked advance, and near
// the end of the window. `current` must be a separator or a field character. Gives the
// number of fields still to pass; the reader may stand inside a field or a separator run then,
// which skip_token continues correctly.
int32_t skip_tokens_in_window(profil_handle& h, int32_t n) {
  Window& w = h.window;
  const __m128i blank = _mm_set1_epi8(' ');
  const __m128i tab = _mm_set1_epi8('\t');
  const __m128i lf = _mm_set1_epi8('\n');
  const __m128i cr = _mm_set1_epi8('\r');
  const __m128i ff = _mm_set1_epi8(static_cast<char>(0xFF));
  uint32_t previous_in_field = is_separator(h.current) ? 0u : 1u;
  int32_t i = w.next;
  while (n > 0 && i + 16 <= w.filled) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(w.bytes + i));
    const auto sep = static_cast<uint32_t>(
        _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, blank), _mm_cmpeq_epi8(v, tab))));
    const auto special = static_cast<uint32_t>(_mm_movemask_epi8(
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, lf), _mm_cmpeq_epi8(v, cr)), _mm_cmpeq_epi8(v, ff))));
    const uint32_t usable = special ? (special & (0u - special)) - 1u : 0xFFFFu;
    const uint32_t in_field = ~sep & 0xFFFFu;
    // A field ends at a separator byte whose previous byte belongs to a field.
    const uint32_t ends = sep & ((in_field << 1) | previous_in_field) & usable;
    uint32_t e = ends;
    for (; e != 0 && n > 1; e &= e - 1) --n;
    if (e != 0) {
      i += std::countr_zero(e) + 1;  // behind the separator that ends the last field
      n = 0;
      break;
    }
    if (special) {
      // Up to the bytes before the special one, then the tracked advance takes over.
      i += std::countr_zero(special);
      break;
    }
    previous_in_field = (in_field >> 15) & 1u;
    i += 16;
  }
  if (i > w.next) {
    h.current = as_signed(w.bytes[i - 1]);
    w.next = i;
  }
  return n;
}

}  // namespace
#endif

void skip_tokens(profil_handle& h, int32_t n) {
#if defined(__SSE2__)
  if (n > 0 && h.current != kEnd) n = skip_tokens_in_window(h, n);
#endif
  for (; n > 0; --n)
    if (!skip_token(h)) return;
}

void skip_line(profil_handle& h) {
  Window& w = h.window;
  while (h.current != '\n' && h.current != kEnd) {
    // Every byte before the stop is neither LF nor 255, so landing on the stop through the
    // tracked advance counts the line end exactly as a byte-by-byte walk would.
    if (w.next < w.filled) w.next = find_line_stop(w);
    tracked_advance(h);
  }
  tracked_advance(h);
}

void rebuild_page(profil_handle& h, int32_t p, int32_t i) {
  h.current = ' ';
  seek(h, h.data_start);
  const int64_t line_ends = static_cast<int64_t>(p) * kPageLines;
  for (int64_t n = 0; n < line_ends; ++n)
    if (!pass_line_end_raw(h)) break;
  h.page = p;
  h.line = i;
  h.line_offsets[0] = position(h);
  for (int32_t k = 1; k <= i && k < kPageLines; ++k) {
    pass_line_end_raw(h);
    h.line_offsets[k] = position(h);
  }
  for (int32_t k = i; k < kPageLines; ++k) h.line_offsets[k] = -1;
  // The line the reader stands at is the one we came for; keep its start all the same, so
  // that a later step back to it is a seek.
  if (i >= 0 && i < kPageLines) h.line_offsets[i] = position(h);
  h.current = ' ';
}

bool step_back(profil_handle& h) {
  h.line -= 2;
  if (h.line >= 0) {
    const int32_t start = h.line_offsets[h.line];
    if (start >= 0) {
      seek(h, start);
    } else {
      // Rows that spread over several lines can leave the wanted start unknown.
      rebuild_page(h, h.page, h.line);
    }
  } else if (h.page >= 1) {
    rebuild_page(h, h.page - 1, h.line + kPageLines);
  } else {
    seek(h, h.data_start);
    h.line = 0;
    h.current = ' ';
    return false;
  }
  h.current = ' ';
  return true;
}

}  // namespace tiv::profile
