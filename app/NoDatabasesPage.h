// What the first screen shows where there is no database yet: how to come by one.
#pragma once

#include <QScrollArea>
#include <functional>

namespace quillary {

class CNoDatabasesPage : public QScrollArea {
  public:
    /// `folder` is where databases belong; `create` is what the button for a new one does.
    CNoDatabasesPage(const QString& folder, const std::function<void()>& create);
};

}  // namespace quillary
