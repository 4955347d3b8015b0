#include "platform/foundation/memory.hpp"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

namespace {

/// Segments that are never written are as they are in the file.
int giveBackSegments(dl_phdr_info* object, std::size_t, void* pageSize) {
  const auto page = *static_cast<std::uintptr_t*>(pageSize);
  for (const auto& segment : std::span(object->dlpi_phdr, object->dlpi_phnum)) {
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) continue;
    const auto start = object->dlpi_addr + segment.p_vaddr;
    const auto begin = start / page * page;
    madvise(reinterpret_cast<void*>(begin), start + segment.p_memsz - begin, MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void giveBackMemory() {
  malloc_trim(0);
  auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  dl_iterate_phdr(giveBackSegments, &page);
}

}  // namespace platform
