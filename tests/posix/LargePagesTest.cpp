#include "platform/posix/LargePages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory_resource>
#include <new>
#include <vector>

#include "db/Image.h"

namespace quillary {
namespace {

constexpr std::size_t kLarge = std::size_t{2} << 20;

bool IsAligned(const Image& image) { return reinterpret_cast<std::uintptr_t>(image.Bytes().data()) % kLarge == 0; }

class LargePages : public testing::Test {
  protected:
    LargePages() { UseLargePages(); }
    ~LargePages() override { std::pmr::set_default_resource(m_before); }

    std::pmr::memory_resource* m_before = std::pmr::get_default_resource();
};

TEST_F(LargePages, LargeImagesBeginAtOneAndCanBeFilled) {
    for (const std::size_t size : {kLarge, kLarge + 1, 5 * kLarge - 1}) {
        Image image(size);
        EXPECT_TRUE(IsAligned(image)) << size;
        std::fill_n(image.Data(), size, 'x');
        image.Shrink(10);  // given back is what was taken
        Image moved = std::move(image);
        std::pmr::set_default_resource(m_before);  // another resource does not get it
        image = Image("small");
        EXPECT_EQ(moved.Bytes(), "xxxxxxxxxx");
        UseLargePages();
    }
    EXPECT_THROW(Image(std::numeric_limits<std::size_t>::max() - 5), std::bad_alloc);
}

TEST_F(LargePages, SmallImagesTakeNone) {
    std::vector<Image> images;
    for (int i = 0; i < 40; ++i) images.emplace_back(std::string_view("a small table"));
    EXPECT_FALSE(std::all_of(images.begin(), images.end(), IsAligned));
}

}  // namespace
}  // namespace quillary
