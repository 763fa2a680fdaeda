// A calendar and an address book in memory, which can be away, refuse items, or take their time.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "integration/Appointment.h"
#include "integration/Contact.h"
#include "integration/PersonalStore.h"

namespace quillary {

/// What the stores of one test hold together. A run may go on after its test has let go of it.
struct FakePersonalItems {
    bool isThere = true;
    bool letsIn = true;     // at the log-on
    std::set<int> refuses;  // items, counted from 0
    int waitsAt = -2;       // at this item, or at -1 while it starts up, until it is set to something else
    bool keepsFiles = false;

    std::vector<Appointment> appointments;
    std::vector<Contact> contacts;
    std::vector<std::filesystem::path> files;
    std::vector<std::string> uids;
    int asked = -1;  // for items; -1 before the first store has been opened
    std::mutex mutex;
    std::condition_variable changed;

    bool Ask() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return asked != waitsAt; });
        return refuses.count(asked++) == 0;
    }
    void GoOn() {
        const std::lock_guard lock(mutex);
        waitsAt = -2;
        changed.notify_all();
    }
};

class FakePersonalStore : public PersonalStore {
  public:
    explicit FakePersonalStore(std::shared_ptr<FakePersonalItems> items) : m_items(std::move(items)) {}

    bool Create() override { return m_items->Ask() && m_items->isThere; }
    bool LogOn() override { return m_items->letsIn; }
    bool AddAppointment(const Appointment& appointment, const std::string& uid) override {
        return Add(m_items->appointments, appointment, uid);
    }
    bool AddContact(const Contact& contact, const std::string& uid) override {
        return Add(m_items->contacts, contact, uid);
    }
    std::vector<std::filesystem::path> Files() const override { return m_items->files; }

  private:
    template <class Item>
    bool Add(std::vector<Item>& items, const Item& item, const std::string& uid) {
        if (!m_items->Ask()) return false;
        items.push_back(item);
        m_items->uids.push_back(uid);
        if (m_items->keepsFiles) m_items->files.push_back("/items/" + uid);
        return true;
    }

    std::shared_ptr<FakePersonalItems> m_items;
};

}  // namespace quillary
