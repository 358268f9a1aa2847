// The streaming reader that every lookup of a catalogue file shares.
//
// Characters come from the handle's read window. A CR directly before an LF is dropped, so a
// line end arrives as one LF whatever the file was written with; positions are byte offsets in
// the file. Two ways of advancing exist: the raw advance (header, page rebuild) only reads the
// next character into `current`; the tracked advance (rows) also counts line ends into `line`,
// `page` and `line_offsets`. Both do nothing once `current` is -1.
#pragma once

#include "profile/handle.h"

namespace tiv::profile {

// Offset in the file of the next character to be read.
int32_t position(const profil_handle& h);

// Moves the reader to a file offset; a target inside the window costs no I/O.
void seek(profil_handle& h, int32_t offset);

void raw_advance(profil_handle& h);
void tracked_advance(profil_handle& h);

// Back to the first row: position data_start, current a blank, page and line 0, the first
// line start known, all others unknown.
void rewind(profil_handle& h);

// The next field of the rows: separators (blank, tab, LF) are passed over, then characters
// are taken up to the next separator or the end of the file, which stays in `current`. Only
// the first kFieldMax characters are kept in out (room for kFieldMax + 1). Gives the length
// kept; 0 means the end of the file was reached before any character.
int read_token(profil_handle& h, char* out);

// As read_token, keeping nothing. Gives false at the end of the file.
bool skip_token(profil_handle& h);

// Passes the next n fields, as n calls of skip_token would.
void skip_tokens(profil_handle& h, int32_t n);

// Passes the rest of the current line and its line end (tracked), and reads one more
// character.
void skip_line(profil_handle& h);

// Places the reader at the start of the row before the row last read. Gives false, with the
// reader at the start of the data, if there is none.
bool step_back(profil_handle& h);

// Makes page p current with the reader at the start of its line i (0..15), recounting line
// ends from data_start.
void rebuild_page(profil_handle& h, int32_t p, int32_t i);

}  // namespace tiv::profile
