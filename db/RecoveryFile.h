// What a recovery file says: which database a rewrite was meant for, what that held before, what it is to hold.
//
// Layout, numbers in the machine's own order as the file never leaves it:
//   0  8  "QlyRecov"                             32  8  inode, 0 for a file that is being created
//   8  2  version, 1                             40  8  length of the old image
//  10  2  purpose, 0 to save, 1 to restore
//  12  4  length of the path                     48  8  length of the new image
//  16  8  device                                 56  8  hash of the new image
//  24  8  hash of the block that a cut leaves    64  .  canonical path, hash of each 512-byte block of the old image,
//                                                       hash of all before
// and behind this head the new image. A cut leaves a part of an old block when the new image is the shorter one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/FileAccess.h"
#include "db/Image.h"

namespace quillary {

/// Tells apart contents that differ by accident, at the speed of memory. No defence against design.
[[nodiscard]] std::uint64_t Hash64(std::string_view bytes);

class RecoveryFile {
  public:
    /// How a database file compares with the two images.
    enum class Match : std::uint8_t { Old, New, Mixture, Neither };

    enum class Purpose : std::uint16_t {
        Save,     // the old image is as good as the new one: a save that did not begin is none
        Restore,  // of a copy that the user asked for: it is completed even where it did not begin
    };

    /// The bytes that stand before the new image. `file` names device and inode of the database, zeros for a new one.
    [[nodiscard]] static std::string Head(const Path& canonicalPath, const FileStamp& file, std::string_view oldImage,
                                          std::string_view newImage, Purpose purpose = Purpose::Save);

    /// Whether another version of this program wrote the bytes, in a layout of its own.
    [[nodiscard]] static bool IsOfOtherVersion(std::string_view bytes);
    /// nullopt for bytes that are not whole. No number in them is trusted.
    [[nodiscard]] static std::optional<RecoveryFile> Parse(Image bytes);

    [[nodiscard]] bool IsFor(const Path& canonicalPath) const { return m_path == canonicalPath; }
    /// Whether the file was being created.
    [[nodiscard]] bool IsOfNewFile() const { return m_inode == 0; }
    [[nodiscard]] std::string_view NewImage() const { return m_bytes.Bytes().substr(m_headSize); }

    /// What a Restore has not begun with counts as a mixture. `inode` is the number of the file that holds `bytes`. A
    /// mixture has every block from one of the two images, so a file that someone else wrote into the same inode is
    /// none.
    [[nodiscard]] Match Compare(std::string_view bytes, std::uint64_t inode) const;

  private:
    [[nodiscard]] bool IsMixture(std::string_view bytes) const;
    [[nodiscard]] bool IsOldBlock(std::string_view bytes, std::size_t at) const;

    Image m_bytes;
    std::size_t m_headSize = 0;
    Path m_path;
    Purpose m_purpose = Purpose::Save;
    std::uint64_t m_inode = 0;
    std::uint64_t m_oldSize = 0;
    std::uint64_t m_cutBlock = 0;
    std::vector<std::uint64_t> m_oldBlocks;
};

}  // namespace quillary
