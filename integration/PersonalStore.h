// The user's calendar and address book, wherever the desktop keeps them.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillary {

struct Appointment;
struct Contact;

/// Calls may wait for another program; one thread at a time uses a store.
class PersonalStore {
  public:
    virtual ~PersonalStore() = default;
    /// Finds the store. False when there is none.
    [[nodiscard]] virtual bool Create() = 0;
    /// Connects to its calendar and its address book. False when it refuses.
    [[nodiscard]] virtual bool LogOn() = 0;
    /// Why it refused, for a person (UTF-8); empty where nobody knows.
    [[nodiscard]] virtual std::string Reason() const { return {}; }
    /// `uid` names the item for good: an item of that name which is there already stays as it is and counts as kept.
    /// False when the item could not be kept.
    [[nodiscard]] virtual bool AddAppointment(const Appointment& appointment, const std::string& uid) = 0;
    [[nodiscard]] virtual bool AddContact(const Contact& contact, const std::string& uid) = 0;
    /// The files that hold the items kept so far, of a store that keeps each in a file for other programs to read.
    [[nodiscard]] virtual std::vector<std::filesystem::path> Files() const { return {}; }
};

/// Makes the store for one export; it connects to nothing before Create.
using PersonalStoreFactory = std::function<std::unique_ptr<PersonalStore>()>;

}  // namespace quillary
