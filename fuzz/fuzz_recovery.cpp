// Any bytes as a recovery file beside a database: what is loaded is the file itself, unless the recovery file is whole
// and the file a mixture of its two images; reading writes nothing.
#include <algorithm>
#include <cstring>
#include <string>

#include "db/RecoveryFile.h"
#include "db/Saving.h"
#include "fuzz/FuzzCheck.h"
#include "tests/fakes/MemoryFiles.h"

namespace quillary {
namespace {

constexpr const char* kPath = "/db.pdb";

// The first two bytes say how much of the rest is the database file; what follows is the recovery file.
std::size_t FileSize(std::string_view bytes) {
    const std::size_t wanted = static_cast<unsigned char>(bytes[0]) * 256u + static_cast<unsigned char>(bytes[1]);
    return std::min(wanted, bytes.size() - 2);
}

// Makes lengths and hashes fit again, as no mutation gets past them by chance. Layout: db/RecoveryFile.h.
void Seal(char* recovery, std::size_t size) {
    constexpr std::size_t kFixedSize = 64;
    if (size < kFixedSize) return;
    std::uint32_t pathLength = 0;
    std::uint64_t oldSize = 0;
    std::memcpy(&pathLength, recovery + 12, sizeof pathLength);
    std::memcpy(&oldSize, recovery + 40, sizeof oldSize);
    const std::uint64_t headHashAt =
        kFixedSize + std::uint64_t{pathLength} + (oldSize / 512 + (oldSize % 512 != 0)) * 8;
    if (oldSize > 0xFFFFFFFF || headHashAt + 8 > size) return;
    const std::uint64_t newSize = size - headHashAt - 8;
    const std::uint64_t newHash = Hash64({recovery + headHashAt + 8, newSize});
    std::memcpy(recovery + 48, &newSize, sizeof newSize);
    std::memcpy(recovery + 56, &newHash, sizeof newHash);
    const std::uint64_t headHash = Hash64({recovery, headHashAt});
    std::memcpy(recovery + headHashAt, &headHash, sizeof headHash);
}

void Run(std::string_view bytes) {
    if (bytes.size() < 2) return;
    const std::size_t fileSize = FileSize(bytes);
    MemoryFiles files;
    const std::string file(bytes.substr(2, fileSize));
    const std::string recovery(bytes.substr(2 + fileSize));
    files.contents[kPath] = file;
    const std::string recoveryPath = files.RecoveryPath(kPath).string();
    files.contents[recoveryPath] = recovery;

    LoadedFile loaded;
    FileError error;
    FUZZ_CHECK(LoadDatabaseFile(files, kPath, LoadMode::Read, nullptr, loaded, error));
    FUZZ_CHECK(files.contents[kPath] == file && files.contents[recoveryPath] == recovery);
    if (loaded.recovery != RecoveryState::Pending) FUZZ_CHECK(loaded.image->Bytes() == file);
    const std::string asRead(loaded.image->Bytes());

    FUZZ_CHECK(LoadDatabaseFile(files, kPath, LoadMode::Complete, nullptr, loaded, error));
    FUZZ_CHECK(loaded.image->Bytes() == asRead && files.contents[kPath] == asRead);
    FUZZ_CHECK(loaded.recovery != RecoveryState::Pending);
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    size = LLVMFuzzerMutate(data, size, maxSize);
    char* bytes = reinterpret_cast<char*>(data);
    if (size > 2 && seed % 8 != 0) {
        const std::size_t at = 2 + quillary::FileSize({bytes, size});
        quillary::Seal(bytes + at, size - at);
    }
    return size;
}
