// The editors of the record form: each stands between the stored text of a field and the widget in which a person
// changes it, one kind for every way to edit.
#pragma once

#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "db/Clock.h"
#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

class QWidget;

namespace quillary {

class CRecordEditor {
  public:
    CRecordEditor(const CQuillaryDoc& doc, std::size_t field) : m_doc(doc), m_field(field) {}
    virtual ~CRecordEditor() = default;
    CRecordEditor(const CRecordEditor&) = delete;
    CRecordEditor& operator=(const CRecordEditor&) = delete;

    [[nodiscard]] std::size_t Field() const { return m_field; }
    [[nodiscard]] virtual QWidget& Widget() const = 0;
    /// Shows a stored text; nullopt when the record has no entry for the field.
    virtual void Load(std::optional<std::string_view> stored) = 0;
    /// Goes on from a stored text that was made of what the editor holds, with caret and undo where they are.
    virtual void Follow(std::optional<std::string_view> stored) { Load(stored); }
    virtual void SetReadOnly(bool readOnly) = 0;

    /// Whether the user has changed what was loaded.
    [[nodiscard]] virtual bool IsChanged() const = 0;
    /// What the editor holds, in the stored form; nullopt when that cannot be stored.
    [[nodiscard]] virtual std::optional<std::string> Stored(Failure& failure) const = 0;

    /// Whether the widget has a caret, which a click that begins the editing also places.
    [[nodiscard]] virtual bool HasCaret() const { return false; }
    /// Whether a click at that place of the widget follows a link instead of beginning the editing.
    [[nodiscard]] virtual bool IsLinkAt(const QPoint& /*place*/) const { return false; }
    /// What an action on the value takes: the text as it is in the editor.
    [[nodiscard]] virtual QString Text() const { return {}; }
    /// Calls `follow` when the user follows the link that the editor is while it is read only.
    virtual void WhenFollowed(const std::function<void()>& /*follow*/) {}
    /// Whether Qt::Key_Up or Qt::Key_Down leads out of this editor, in its present state.
    [[nodiscard]] virtual bool IsLeftBy(int /*key*/) const { return true; }

  protected:
    [[nodiscard]] QString Display(std::optional<std::string_view> stored) const;
    [[nodiscard]] std::optional<std::string> StoredOf(const QString& typed, Failure& failure) const;
    [[nodiscard]] const CQuillaryDoc& Doc() const { return m_doc; }

  private:
    const CQuillaryDoc& m_doc;
    const std::size_t m_field;
};

/// The editor that the field's type has, with its widget in `parent`. All outlive it.
[[nodiscard]] std::unique_ptr<CRecordEditor> MakeRecordEditor(const CQuillaryDoc& doc, std::size_t field,
                                                              const Clock& clock, DateOrder order, QWidget& parent);

}  // namespace quillary
