// Access to the two links at the head of every list element.
#pragma once

#include <tivlib/list.h>

namespace tiv::containers {

// An element is any record that begins with list_links; the list reads and writes only those.
inline list_links *links(void *element) noexcept { return static_cast<list_links *>(element); }
inline const list_links *links(const void *element) noexcept {
    return static_cast<const list_links *>(element);
}

}  // namespace tiv::containers
