#include "catalogue-server/FileCopy.h"

#include <sys/mman.h>

namespace quillary {

namespace {

// Up to here sending head and body from memory costs less than the kernel's own copying, which comes in small pieces.
constexpr std::size_t kSmall = 1 << 20;

}  // namespace

std::shared_ptr<const FileCopy> FileCopy::Make(std::shared_ptr<const Image> image) {
    auto copy = std::make_shared<FileCopy>();
    copy->m_size = image->Size();
    if (image->Size() <= kSmall) {
        copy->m_image = std::move(image);
        return copy;
    }
    FileError error;
    copy->m_file = PosixFile(memfd_create("published", MFD_CLOEXEC));
    if (!copy->m_file || !copy->m_file.WriteAt(0, image->Bytes(), error)) return nullptr;
    return copy;
}

}  // namespace quillary
