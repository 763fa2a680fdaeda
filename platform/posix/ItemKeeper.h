// Keeps the texts of calendar items and contacts somewhere: what differs from one personal store to the other.
#pragma once

#include <string>
#include <vector>

#include "db/FileAccess.h"

namespace quillary {

/// Calls may wait for another program; one thread at a time uses a keeper.
class ItemKeeper {
  public:
    virtual ~ItemKeeper() = default;
    /// As those of PersonalStore.
    [[nodiscard]] virtual bool Create() = 0;
    [[nodiscard]] virtual bool LogOn() = 0;
    [[nodiscard]] virtual std::string Reason() const { return {}; }
    /// `text` is an iCalendar object with one event. An item called `uid` that is there already stays, and counts as
    /// kept.
    [[nodiscard]] virtual bool KeepEvent(const std::string& text, const std::string& uid) = 0;
    /// `text` is a vCard.
    [[nodiscard]] virtual bool KeepCard(const std::string& text, const std::string& uid) = 0;
    /// The files of the items that were kept by this keeper, where each has one.
    [[nodiscard]] virtual std::vector<Path> Files() const { return {}; }
};

}  // namespace quillary
