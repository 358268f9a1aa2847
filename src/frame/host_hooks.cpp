// Sound, delay, and the hooks through which a host replaces the window-system stand-ins.
#include <tivlib/zv.h>

#include "frame/errlog.h"
#include "platform/message_box.h"

static_assert(tiv::frame::kLogPathMax == ZV_LOG_PATH_MAX);

extern "C" {

void zv_tone(void) noexcept { tiv::platform::beep(); }
void zv_beep(void) noexcept { tiv::platform::beep(); }
void zv_wait(void) noexcept {}
void zv_pause(void) noexcept {}

void zv_set_message_box_handler(zv_message_box_fn handler, intptr_t user) noexcept {
  tiv::platform::set_message_box_handler(handler, user);
}

void zv_set_beep_handler(zv_beep_fn handler, intptr_t user) noexcept {
  tiv::platform::set_beep_handler(handler, user);
}

int32_t zv_quit_requested(void) noexcept { return tiv::platform::quit_requested() ? 1 : 0; }

void zv_clear_quit_request(void) noexcept { tiv::platform::clear_quit_request(); }

int32_t zv_set_log_file(const char* path) noexcept {
  return tiv::frame::set_log_place(path) ? 0 : -1;
}

}  // extern "C"
