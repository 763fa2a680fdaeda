// Puts widgets side by side, in as many rows as the width asks for.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace quillary {

class CFlowLayout : public QLayout {
  public:
    void addItem(QLayoutItem* item) override { m_items.emplace_back(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return Place({0, 0, width, 0}, Doing::Measures); }
    /// All in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// One in each.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

  private:
    enum class Doing { Measures, Places };
    /// The height that the rows take.
    int Place(const QRect& rect, Doing doing) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

}  // namespace quillary
