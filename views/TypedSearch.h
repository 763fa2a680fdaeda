// Letters that are typed into the record list: what they spell until a pause, and the row that they lead to.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <optional>

namespace quillary {

class CQuillaryDoc;

class CTypedSearch {
  public:
    explicit CTypedSearch(const CQuillaryDoc& doc) : m_doc(doc) {}

    /// The row that begins with what has been typed so far, `letters` last; `currentRow` is the one from which to look,
    /// or -1. nullopt when there is none.
    [[nodiscard]] std::optional<int> Type(const QString& letters, int currentRow);
    /// Whether what is typed now goes on with the letters before.
    [[nodiscard]] bool IsUnderWay() const;

  private:
    const CQuillaryDoc& m_doc;
    QString m_typed;
    QElapsedTimer m_sinceLast;
};

}  // namespace quillary
