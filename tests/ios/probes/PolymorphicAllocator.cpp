// device accepts
// symbols refuses: NSt3__13pmr
// libcxx14 refuses: 'memory_resource' file not found
#include <memory_resource>
void* probe(std::pmr::memory_resource& memory) {
  return std::pmr::polymorphic_allocator<char>(&memory).resource() ==
                 std::pmr::new_delete_resource()
             ? &memory
             : nullptr;
}
