#include "platform/posix/LargePages.h"

#include <sys/mman.h>

#include <cstdlib>
#include <limits>
#include <memory_resource>
#include <new>

namespace quillary {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;  // smaller images stay where everything else is

class LargePages : public std::pmr::memory_resource {
    void* do_allocate(std::size_t size, std::size_t alignment) override {
        if (size < kLargePage) return std::pmr::new_delete_resource()->allocate(size, alignment);
        if (size > std::numeric_limits<std::size_t>::max() - kLargePage) throw std::bad_alloc();
        const std::size_t whole = (size + kLargePage - 1) / kLargePage * kLargePage;
        void* memory = std::aligned_alloc(kLargePage, whole);
        if (!memory) throw std::bad_alloc();
        madvise(memory, whole, MADV_HUGEPAGE);  // a hint: a system without large pages goes on with small ones
        return memory;
    }
    void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override {
        if (size < kLargePage) return std::pmr::new_delete_resource()->deallocate(memory, size, alignment);
        std::free(memory);
    }
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

}  // namespace

void UseLargePages() {
    static LargePages pages;
    std::pmr::set_default_resource(&pages);
}

}  // namespace quillary
