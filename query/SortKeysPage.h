// The rows in which a person chooses up to three sort keys: a field each, and a direction once there is a field.
#pragma once

#include <QWidget>
#include <array>

#include "db/Layout.h"
#include "db/QuerySettings.h"

class QBoxLayout;
class QComboBox;
class QRadioButton;

namespace quillary {

class CQuillaryDoc;

class CSortKeysPage : public QWidget {
  public:
    explicit CSortKeysPage(const CQuillaryDoc& doc);

    /// Preselects the keys, one a row.
    void Load(const SortSettings& keys);
    /// The keys of the rows with a field, in their order; a row without one leaves no gap.
    [[nodiscard]] SortSettings Keys() const;
    void FocusFirst();

    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    /// A wide page has the direction beside the field, a narrow one below it, the narrowest in two lines.
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Row {
        QWidget* box;  // around all of it
        QBoxLayout* line;
        QComboBox* field;
        QWidget* direction;  // around the next three
        QBoxLayout* pair;
        QRadioButton* ascending;
        QRadioButton* descending;
    };

    [[nodiscard]] Row AddRow(std::size_t number, const QString& label);
    [[nodiscard]] static bool HasField(const Row& row);
    /// A direction can be chosen where there is a field.
    static void ShowDirection(const Row& row);

    const CQuillaryDoc& m_doc;
    std::array<Row, kMaxSortKeys> m_rows;
};

}  // namespace quillary
