#include "db/RecoveryFile.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "db/Layout.h"

namespace quillary {

namespace {

constexpr std::string_view kMagic = "QlyRecov";
constexpr std::uint16_t kFormat = 1;
constexpr std::size_t kFormatAt = 8;
constexpr std::size_t kPurposeAt = 10;
constexpr std::size_t kPathLengthAt = 12;
constexpr std::size_t kDeviceAt = 16;
constexpr std::size_t kCutBlockAt = 24;
constexpr std::size_t kInodeAt = 32;
constexpr std::size_t kOldSizeAt = 40;
constexpr std::size_t kNewSizeAt = 48;
constexpr std::size_t kNewHashAt = 56;
constexpr std::size_t kFixedSize = 64;
constexpr std::size_t kHashSize = sizeof(std::uint64_t);

// A disk writes at least this much whole.
constexpr std::size_t kBlockSize = 512;

constexpr std::size_t BlockCount(std::uint64_t size) { return (size + kBlockSize - 1) / kBlockSize; }

template <class T>
T Load(std::string_view bytes, std::size_t at) {
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

template <class T>
void Store(std::string& bytes, std::size_t at, T value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

std::string_view BlockAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? bytes.substr(at, kBlockSize) : std::string_view{};
}

// What is left of the old image's block in which the new one ends, once the length is cut.
std::string_view CutBlock(std::string_view oldImage, std::size_t newSize) {
    return BlockAt(oldImage.substr(0, newSize), newSize / kBlockSize * kBlockSize);
}

bool IsZero(std::string_view bytes) { return bytes.find_first_not_of('\0') == bytes.npos; }

}  // namespace

std::uint64_t Hash64(std::string_view bytes) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    constexpr std::uint64_t kMix = 0xD6E8FEB86659FD93;
    const auto step = [](std::uint64_t lane, std::uint64_t word) {
        return std::rotl(lane ^ (word * kMix), 29) * kFactor;
    };
    // Four lanes, as a multiplication takes four times as long as it takes to start the next.
    std::uint64_t lanes[4] = {1, 2, 3, 4};
    std::size_t at = 0;
    for (; bytes.size() - at >= sizeof lanes; at += sizeof lanes) {
        for (std::size_t i = 0; i < 4; ++i) lanes[i] = step(lanes[i], Load<std::uint64_t>(bytes, at + 8 * i));
    }
    std::uint64_t tail[4] = {};
    if (at < bytes.size()) std::memcpy(tail, bytes.data() + at, bytes.size() - at);
    std::uint64_t hash = bytes.size();
    for (std::size_t i = 0; i < 4; ++i) hash = step(step(hash, lanes[i]), tail[i]);
    hash = (hash ^ hash >> 32) * kMix;
    return hash ^ hash >> 29;
}

std::string RecoveryFile::Head(const Path& canonicalPath, const FileStamp& file, std::string_view oldImage,
                               std::string_view newImage, Purpose purpose) {
    const std::string& path = canonicalPath.native();
    std::string head(kFixedSize + path.size() + (BlockCount(oldImage.size()) + 1) * kHashSize, '\0');
    kMagic.copy(head.data(), kMagic.size());
    Store(head, kFormatAt, kFormat);
    Store(head, kPurposeAt, purpose);
    Store(head, kPathLengthAt, static_cast<std::uint32_t>(path.size()));
    Store(head, kDeviceAt, file.device);
    Store(head, kCutBlockAt, Hash64(CutBlock(oldImage, newImage.size())));
    Store(head, kInodeAt, file.inode);
    Store(head, kOldSizeAt, std::uint64_t{oldImage.size()});
    Store(head, kNewSizeAt, std::uint64_t{newImage.size()});
    Store(head, kNewHashAt, Hash64(newImage));
    path.copy(head.data() + kFixedSize, path.size());
    std::size_t at = kFixedSize + path.size();
    for (std::size_t block = 0; block < oldImage.size(); block += kBlockSize, at += kHashSize) {
        Store(head, at, Hash64(BlockAt(oldImage, block)));
    }
    Store(head, at, Hash64(std::string_view(head).substr(0, at)));
    return head;
}

bool RecoveryFile::IsOfOtherVersion(std::string_view bytes) {
    return bytes.size() >= kPathLengthAt && bytes.starts_with(kMagic) &&
           Load<std::uint16_t>(bytes, kFormatAt) != kFormat;
}

std::optional<RecoveryFile> RecoveryFile::Parse(Image image) {
    const std::string_view bytes = image.Bytes();
    if (bytes.size() < kFixedSize || !bytes.starts_with(kMagic) || Load<std::uint16_t>(bytes, kFormatAt) != kFormat) {
        return std::nullopt;
    }
    RecoveryFile file;
    const auto pathLength = Load<std::uint32_t>(bytes, kPathLengthAt);
    const auto newSize = Load<std::uint64_t>(bytes, kNewSizeAt);
    file.m_purpose = Load<Purpose>(bytes, kPurposeAt);
    file.m_cutBlock = Load<std::uint64_t>(bytes, kCutBlockAt);
    file.m_inode = Load<std::uint64_t>(bytes, kInodeAt);
    file.m_oldSize = Load<std::uint64_t>(bytes, kOldSizeAt);
    if (file.m_oldSize > kMaxReadSize) return std::nullopt;
    const std::uint64_t hashesAt = std::uint64_t{kFixedSize} + pathLength;
    const std::uint64_t headHashAt = hashesAt + BlockCount(file.m_oldSize) * kHashSize;
    const std::uint64_t headSize = headHashAt + kHashSize;
    if (headSize > bytes.size() || bytes.size() - headSize != newSize) return std::nullopt;
    if (Hash64(bytes.substr(0, headHashAt)) != Load<std::uint64_t>(bytes, headHashAt)) return std::nullopt;
    if (Hash64(bytes.substr(headSize)) != Load<std::uint64_t>(bytes, kNewHashAt)) return std::nullopt;
    file.m_path = std::string(bytes.substr(kFixedSize, pathLength));
    file.m_oldBlocks.resize(BlockCount(file.m_oldSize));
    for (std::size_t i = 0; i < file.m_oldBlocks.size(); ++i) {
        file.m_oldBlocks[i] = Load<std::uint64_t>(bytes, hashesAt + i * kHashSize);
    }
    file.m_headSize = headSize;
    file.m_bytes = std::move(image);
    return file;
}

RecoveryFile::Match RecoveryFile::Compare(std::string_view bytes, std::uint64_t inode) const {
    if (bytes == NewImage()) return Match::New;
    bool isOld = bytes.size() == m_oldSize && m_oldSize > 0;  // an empty file is a creation that was stopped
    for (std::size_t at = 0; isOld && at < bytes.size(); at += kBlockSize) isOld = IsOldBlock(bytes, at);
    if (isOld && m_purpose == Purpose::Save) return Match::Old;
    // The device is not asked: some file systems get another number at every start of the machine.
    const bool sameFile = m_inode == inode || m_inode == 0;
    return sameFile && IsMixture(bytes) ? Match::Mixture : Match::Neither;
}

bool RecoveryFile::IsOldBlock(std::string_view bytes, std::size_t at) const {
    const std::size_t oldLength = std::min<std::size_t>(kBlockSize, m_oldSize - at);
    return bytes.size() - at >= oldLength && Hash64(bytes.substr(at, oldLength)) == m_oldBlocks[at / kBlockSize];
}

bool RecoveryFile::IsMixture(std::string_view bytes) const {
    const std::string_view newImage = NewImage();
    const std::uint64_t newSize = newImage.size();
    if (bytes.size() < std::min(m_oldSize, newSize) || bytes.size() > std::max(m_oldSize, newSize)) return false;
    for (std::size_t at = 0; at < bytes.size(); at += kBlockSize) {
        const std::string_view block = BlockAt(bytes, at);
        const std::string_view newBlock = BlockAt(newImage, at).substr(0, block.size());
        const std::size_t oldLength = at < m_oldSize ? std::min<std::size_t>(block.size(), m_oldSize - at) : 0;
        // Where the new image ends inside the block, the old one's bytes follow until the length is cut.
        const std::string_view newStart = newBlock.substr(0, oldLength);
        const bool isNew = !newStart.empty() && block.starts_with(newStart);
        const bool isCut = bytes.size() == newImage.size() && block.size() < kBlockSize && Hash64(block) == m_cutBlock;
        if (oldLength > 0 && !isNew && !isCut && !IsOldBlock(bytes, at)) return false;
        // Behind the old end lies nothing before the new bytes: zeros, when the length has grown already.
        const std::string_view grown = block.substr(oldLength);
        if (!IsZero(grown) && grown != newBlock.substr(oldLength)) return false;
    }
    return true;
}

}  // namespace quillary
