// Stand-ins for the window-system calls of the report operations.
//
// There is no window system: a message box never blocks. By default it writes caption and
// text as one line to standard error; a host may install its own handler. The quit request
// is a process-wide flag, and a beep does nothing unless the host installs a handler.
#pragma once

#include <cstdint>

namespace tiv::platform {

using message_box_fn = void (*)(const char* caption, const char* text, std::intptr_t user);
using beep_fn = void (*)(std::intptr_t user);

// Shows a box (or its stand-in) and returns when it is "dismissed": at once.
void show_message_box(const char* caption, const char* text) noexcept;
// Installs a handler for message boxes; nil restores the line on standard error.
void set_message_box_handler(message_box_fn handler, std::intptr_t user) noexcept;

// The simple beep; nothing happens unless a handler is installed (nil removes it).
void beep() noexcept;
void set_beep_handler(beep_fn handler, std::intptr_t user) noexcept;

// The quit request that a host's message loop would see.
void post_quit() noexcept;
bool quit_requested() noexcept;
void clear_quit_request() noexcept;

}  // namespace tiv::platform
