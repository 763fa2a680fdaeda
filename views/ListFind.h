// Find and Repeat Find in the record list: the dialog, what was looked for, and the search.
#pragma once

#include <QString>
#include <cstddef>
#include <optional>
#include <string>

namespace quillary {

class CQuillaryDoc;
class CommandState;
class FrameWindow;

class CListFind {
  public:
    CListFind(CQuillaryDoc& doc, FrameWindow& frame) : m_doc(doc), m_frame(frame) {}

    /// What was looked for last.
    struct Sought {
        QString text;  // as typed
        int column = kNoFindYet;
    };
    [[nodiscard]] const Sought& LastSought() const { return m_sought; }
    /// Takes up a search, which counts for none when it was in a field that is not there any more.
    void TakeUp(const Sought& sought);
    /// The name (code page bytes) of the field that was searched; empty when none or all were.
    [[nodiscard]] std::string FieldName() const;
    /// Goes on in the field that has this name now, where FieldName() gave it before the fields changed.
    void FollowField(const std::string& name);

    /// Asks what to look for, and looks from the top. The row where it is, or nullopt.
    [[nodiscard]] std::optional<std::size_t> OnFind();
    /// Looks for the same from that row on; at the end, asks whether to go on from the top.
    [[nodiscard]] std::optional<std::size_t> FindFrom(std::size_t row) const;
    [[nodiscard]] bool CanRepeat() const { return m_sought.column != kNoFindYet; }

  private:
    static constexpr int kNoFindYet = -2;

    CQuillaryDoc& m_doc;
    FrameWindow& m_frame;
    Sought m_sought;
};

}  // namespace quillary
