// One condition of a filter: a field, an operator and a value, whose editor is that of the field's type.
#pragma once

#include <QString>
#include <QWidget>
#include <array>
#include <optional>

#include "db/QuillaryDoc.h"
#include "db/UserLocale.h"

class QBoxLayout;
class QLineEdit;
class QStackedWidget;

namespace quillary {

class CDatePicker;
class CQLYButton;
class CQLYComboBox;
class CTimePicker;
class Clock;

class CFilterConditionEditor : public QWidget {
  public:
    /// The condition's number, from 1, and the control ids of its parts.
    struct Controls {
        int number;
        int field;
        int operation;
        int text;
        int check;
        int date;
        int time;
        int list;
    };
    CFilterConditionEditor(const Controls& controls, const CQuillaryDoc& doc, const Clock& clock, DateOrder order);

    /// Null: none. The field that it names is one of the document's.
    void Load(const FilterCondition* stored);
    /// A field, or All Fields, is chosen.
    [[nodiscard]] bool IsUsed() const;
    /// What is set here, as a text to compare.
    [[nodiscard]] QString State() const;
    /// Of one that is used. nullopt when the value cannot be stored; `control` is then its editor.
    [[nodiscard]] std::optional<FilterCondition> Condition(Failure& failure, int& control) const;

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Name(QWidget& widget, int id, const QString& part);
    void FillFields();
    void ShowChosenField();
    void ShowStoredValue();
    [[nodiscard]] std::optional<std::size_t> ChosenField() const;
    /// The editor for values of the chosen field.
    [[nodiscard]] QWidget* ValueEditor() const;
    [[nodiscard]] bool IsStoredField() const;
    [[nodiscard]] QString ShownValue() const;
    [[nodiscard]] std::optional<std::string> StoredValue(Failure& failure, int& control) const;

    const Controls m_controls;
    const CQuillaryDoc& m_doc;
    CQLYComboBox* m_fields;
    CQLYComboBox* m_operators;
    QStackedWidget* m_values;
    QBoxLayout* m_test;  // operator and value: beside each other, or on a small screen below
    QLineEdit* m_text;
    CQLYButton* m_check;
    CDatePicker* m_date;
    CTimePicker* m_time;
    CQLYComboBox* m_list;
    std::optional<FilterCondition> m_stored;
    QString m_storedShown;  // the stored value as its editor shows it
};

}  // namespace quillary
