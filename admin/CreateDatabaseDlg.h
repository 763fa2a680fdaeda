// Asks for the name of a new database and shows where its file will be.
#pragma once

#include <QString>
#include <functional>

#include "admin/NewDatabase.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CCreateDatabaseDlg : public CQuillaryDialog {
  public:
    /// What OK does besides: false, with the reason, keeps the dialog open.
    using Then = std::function<bool(Failure&)>;
    /// The name goes to `database`. `typed` is what the edit box begins with. With a `then`, work waits for the name
    /// that a Cancel would lose.
    CCreateDatabaseDlg(NewDatabase& database, const QString& typed, Then then, FrameWindow& frame);

    [[nodiscard]] QString Typed() const;
    /// A name alone is nothing to be saved.
    [[nodiscard]] bool IsChanged() const override { return m_then != nullptr; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;

  private:
    void ShowPath();

    NewDatabase& m_database;
    QString m_typed;
    Then m_then;
};

}  // namespace quillary
