// The page of the filter dialog: three conditions, how they combine, and which records they are applied to.
#pragma once

#include <QStringList>
#include <QWidget>
#include <array>
#include <optional>

#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

class QComboBox;
class QLabel;

namespace quillary {

class CFilterConditionEditor;
class Clock;

class CFilterConditionsPage : public QWidget {
  public:
    CFilterConditionsPage(const CQuillaryDoc& doc, const Clock& clock, DateOrder order);

    /// Shows the document's filter, but for conditions that name no field.
    void Load();
    /// What is set here, as texts to compare.
    [[nodiscard]] QStringList State() const;
    /// The settings, or nullopt when a value cannot be stored; `control` is then its editor.
    [[nodiscard]] std::optional<FilterSettings> Settings(Failure& failure, int& control) const;

  private:
    [[nodiscard]] QComboBox* AddChoice(int id, QLabel& label, const QStringList& items);

    const CQuillaryDoc& m_doc;
    std::array<CFilterConditionEditor*, kMaxConditions> m_conditions{};
    QComboBox* m_combine;
    QLabel* m_applyLabel;
    QComboBox* m_apply;
};

}  // namespace quillary
