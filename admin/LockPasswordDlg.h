// Asks for the password of the info text, to lock it or to open its lock.
#pragma once

#include <cstdint>

#include "ui/QuillaryDialog.h"

namespace quillary {

class CQuillaryDoc;

class CLockPasswordDlg : public CQuillaryDialog {
  public:
    /// Locks when `lock` is 0; any other lock it opens.
    CLockPasswordDlg(const CQuillaryDoc& doc, std::int32_t lock, FrameWindow& frame);
    /// Wipes what was typed.
    ~CLockPasswordDlg() override;

    /// After OK: the lock that the text now has, 0 for none.
    [[nodiscard]] std::int32_t Lock() const { return m_lock; }
    /// A password that is being typed is nothing to be saved.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    [[nodiscard]] bool Commit() override;

  private:
    const CQuillaryDoc& m_doc;
    std::int32_t m_lock;
};

}  // namespace quillary
