// The run of one export: a thread of its own opens the store and hands it the items, so that the window stays live.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include "db/Messages.h"
#include "integration/Appointment.h"
#include "integration/Contact.h"

namespace quillary {

class PersonalStore;

class ExportRun {
  public:
    using Item = std::variant<Appointment, Contact>;

    /// Opens the store and waits for items: `count`, which `makeItem` gives, the first one for 0. It is called on the
    /// thread that calls Advance alone, so that no record is read while it may change.
    ExportRun(std::unique_ptr<PersonalStore> store, std::size_t count, std::function<Item(std::size_t)> makeItem);
    /// Stops it.
    ~ExportRun();
    ExportRun(const ExportRun&) = delete;
    ExportRun& operator=(const ExportRun&) = delete;

    /// Makes the items that the store takes next; waits for nothing. To be called every few milliseconds. True when the
    /// run has ended: every item was tried, or the store could not be opened.
    [[nodiscard]] bool Advance();
    /// No item follows the one that is being written. Waits for that one for `patience` at most; a store that takes
    /// longer, as while another program starts up, is left to itself and keeps nothing any more. True when it has
    /// ended.
    bool Stop(std::chrono::milliseconds patience = {});

    /// The store is open, and items are being written.
    [[nodiscard]] bool IsWriting() const;
    /// Items that were tried, whether they were kept or not.
    [[nodiscard]] std::size_t Tried() const;

    // When it has ended:

    /// What is to be told to the user.
    [[nodiscard]] const std::vector<Failure>& Messages() const;
    /// As PersonalStore::Files.
    [[nodiscard]] const std::vector<std::filesystem::path>& Files() const;

  private:
    struct Shared;
    static void Work(std::unique_ptr<PersonalStore> store, Shared& shared);

    std::size_t m_count;
    std::function<Item(std::size_t)> m_makeItem;
    std::size_t m_made = 0;
    std::shared_ptr<Shared> m_shared;  // with the thread
};

}  // namespace quillary
