// The editor of a text of many lines, which gives back every character that it was given.
#pragma once

#include <QPlainTextEdit>

#include "ui/ReadOnly.h"

namespace quillary {

class CTextEdit : public QPlainTextEdit {
  public:
    explicit CTextEdit(QWidget* parent = nullptr);

    void SetText(const QString& text);
    /// A line ends with CR LF, as in the files. What SetText was given comes back unchanged if it has no LF without a
    /// CR.
    [[nodiscard]] QString Text() const;
    /// The first letter typed into the empty editor becomes upper case.
    void CapitalizeFirst(bool capitalize) { m_capitalize = capitalize; }
    void SetReadOnly(bool readOnly) {
        setReadOnly(readOnly);
        TellReadOnly(*this, readOnly);
    }

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

  private:
    /// `typed`, with its letter in upper case when it is the first.
    [[nodiscard]] QString Capitalized(const QString& typed) const;
    void ChooseWrapping(const QString& added);

    bool m_capitalize = false;
    bool m_pressed = false;  // a key, since the focus came
};

}  // namespace quillary
